#include "adapters/late_bound/late_bound_erp.h"

#include "adapters/late_bound/late_bound_session.h"
#include "automation/automation_error.h"

#include <stdexcept>
#include <utility>

namespace qx {
namespace {

using automation::call;
using automation::get;
using automation::ObjectPointer;
using automation::put;
using automation::Variant;

/// A component and the host that has created it.
class Component {
public:
  Component(AutomationHost& host, std::string_view progId) : host_(host), object_(host.create(progId)) {}

protected:
  automation::AutomationObject& object() const { return *object_; }
  Variant connectionObject(Connection& connection) const { return host_.objectOf(connection); }

private:
  AutomationHost& host_;
  ObjectPointer object_;
};

class LateBoundProtokoll final : public Protokoll, private Component {
public:
  explicit LateBoundProtokoll(AutomationHost& host) : Component(host, "QXHProto.Protokoll") {}

  std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                              std::string_view list) override {
    return automation::textOf(
        call(object(), "CreateProtokoll", {connectionObject(connection), title, kind, list}));
  }
  bool OpenProtokoll(Connection& connection, std::string_view id) override {
    return automation::truthOf(call(object(), "OpenProtokoll", {connectionObject(connection), id}));
  }
  void AddNewRecord() override { call(object(), "AddNewRecord"); }
  void SetField(int kind, int column, std::string_view value) override {
    call(object(), "SetField", {std::int32_t{kind}, std::int32_t{column}, value});
  }
  void UpdateRecord() override { call(object(), "UpdateRecord"); }
};

class LateBoundPreisfindung final : public Preisfindung, private Component {
public:
  explicit LateBoundPreisfindung(AutomationHost& host) : Component(host, "qxPLU.clsPLU") {}

  void setConnection(Connection& connection) override {
    put(object(), "Connection", connectionObject(connection));
  }
  void Init() override { call(object(), "Init"); }
  void Init(Connection& connection) override { call(object(), "Init", {connectionObject(connection)}); }

  /// Five arguments in and ten out, among which there is none for the marks of the single discounts.
  std::int32_t GetVKPreis(const PriceQuestion& question, SalesPrice& found) override {
    Variant price;
    Variant calculated;
    Variant priceUnit;
    Variant discount;
    Variant discountKind;
    Variant stagedKind;
    std::array<Variant, 3> discounts;
    Variant source;
    const Variant date = question.date ? Variant(DateTime{*question.date}) : Variant::null();
    const auto answer = Variant::reference;
    const std::int32_t result = automation::int32Of(call(
        object(), "GetVKPreis",
        {question.customer, question.article, question.quantity, question.unit, date, answer(price),
         answer(calculated), answer(priceUnit), answer(discount), answer(discountKind), answer(stagedKind),
         answer(discounts[0]), answer(discounts[1]), answer(discounts[2]), answer(source)}));
    if (result == failed || result == notFound) return result;
    found.price = number(price);
    found.calculatedPrice = number(calculated);
    found.priceUnit = number(priceUnit);
    found.discount = number(discount);
    found.discountKind = text(discountKind);
    found.discounts.kind = text(stagedKind);
    for (std::size_t i = 0; i < discounts.size(); ++i) found.discounts.values.at(i) = number(discounts.at(i));
    found.source = text(source);
    return result;
  }
  double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) override {
    std::vector<Variant> arguments = staged(discounts);
    arguments.emplace_back(amount);
    return automation::doubleOf(call(object(), "GetGesamtRabattWert", std::move(arguments)));
  }
  double GetGesamtRabattSatz(const StagedDiscounts& discounts) override {
    return automation::doubleOf(call(object(), "GetGesamtRabattSatz", staged(discounts)));
  }

private:
  static std::vector<Variant> staged(const StagedDiscounts& discounts) {
    std::vector<Variant> arguments{discounts.kind};
    for (const std::string& mark : discounts.marks) arguments.emplace_back(mark);
    for (const double value : discounts.values) arguments.emplace_back(value);
    return arguments;
  }
  /// Answers that the component leaves null or does not give are 0 and empty.
  static double number(const Variant& value) {
    return automation::valueOf(value).isNull() ? 0 : automation::doubleOf(value);
  }
  static std::string text(const Variant& value) {
    return automation::valueOf(value).isNull() ? std::string() : automation::textOf(value);
  }
};

class LateBoundVersion final : public Version, private Component {
public:
  explicit LateBoundVersion(AutomationHost& host) : Component(host, "qxWWSVer.Version") {}
  std::string version() override { return automation::textOf(get(object(), "Version")); }
};

class LateBoundProfile final : public Profile, private Component {
public:
  explicit LateBoundProfile(AutomationHost& host) : Component(host, "qxWSPro.WSProfile") {}
  std::string GetAppPath() override { return automation::textOf(call(object(), "GetAppPath")); }
};

class LateBoundAdressindex final : public Adressindex, private Component {
public:
  explicit LateBoundAdressindex(AutomationHost& host) : Component(host, "qxAdrIdx.Adressindex") {}
  void CreateIndex(std::string_view customer, std::int16_t kind) override {
    call(object(), "CreateIndex", {customer, kind});
  }
};

class LateBoundFibuUebergabe final : public FibuUebergabe, private Component {
public:
  explicit LateBoundFibuUebergabe(AutomationHost& host) : Component(host, "Norvalis.FibuUebergabeObject") {}

  void setConnection(Connection& connection) override {
    put(object(), "Connection", connectionObject(connection));
  }
  OpenItemsBalance GetOPSaldo(std::string_view customer) override {
    Variant currency;
    const double amount =
        automation::doubleOf(call(object(), "GetOPSaldo", {customer, Variant::reference(currency)}));
    return {amount, automation::valueOf(currency).text()};
  }
  /// The component has no conversion of its own.
  double convert(double /*amount*/, std::string_view from, std::string_view to) override {
    throw std::runtime_error("the amount in '" + std::string(from) + "' cannot be converted to '" +
                             std::string(to) + "': the ERP's component has no rates");
  }
};

class LateBoundAuskunft final : public Auskunft, private Component {
public:
  explicit LateBoundAuskunft(AutomationHost& host) : Component(host, "Norvalis.AuskunftObject") {}

  /// The properties are set in the order that the component expects.
  std::vector<std::string> show(Session& session, const LookupRequest& request) override {
    if (const auto* const ofHost = dynamic_cast<const automation::OfHost*>(&session))
      put(object(), "Session", ofHost->hostObject());
    put(object(), "RecordSource", request.recordSource);
    put(object(), "Caption", request.caption);
    put(object(), "Profile", request.profile);
    put(object(), "Style", std::int32_t{0});
    put(object(), "Criteria", request.criteria.text());
    put(object(), "Sort", request.sort);
    addAcceptItem(request.acceptCaption);
    call(object(), "Show");
    if (!chosen(get(object(), "result"))) return {};
    std::vector<std::string> values;
    for (const std::string& field : request.resultFields) {
      const ObjectPointer item = automation::objectOf(call(object(), "ResultDataItems", {field}));
      values.push_back(item ? automation::valueOf(get(*item, "DataValue")).text() : std::string());
    }
    return values;
  }

private:
  void addAcceptItem(const std::string& caption) {
    const ObjectPointer items = automation::objectOf(get(object(), "PopupItems"));
    if (!items) return;
    const ObjectPointer item = automation::objectOf(call(*items, "Add"));
    if (!item) return;
    put(*item, "ItemName", "Uebernehmen");
    put(*item, "ItemCaption", caption);
    put(*item, "ItemType", std::int32_t{0});
    put(*item, "DefaultItem", true);
    put(*item, "DataDepending", true);
  }
  /// A choice is anything but nothing, 0 or an empty text.
  static bool chosen(const Variant& result) {
    const Value value = automation::valueOf(result);
    return !value.isEmpty() && value.text() != "0";
  }
};

} // namespace

std::shared_ptr<Session> LateBoundErp::createSession() {
  return std::make_shared<LateBoundSession>(host_.create("Norvalis.Session"), host_);
}

std::unique_ptr<Protokoll> LateBoundErp::createProtokoll() {
  return std::make_unique<LateBoundProtokoll>(host_);
}

std::unique_ptr<Preisfindung> LateBoundErp::createPreisfindung() {
  return std::make_unique<LateBoundPreisfindung>(host_);
}

std::unique_ptr<Einkaufspreisfindung> LateBoundErp::createEinkaufspreisfindung(Connection& /*connection*/) {
  return nullptr;
}

std::unique_ptr<Version> LateBoundErp::createVersion() { return std::make_unique<LateBoundVersion>(host_); }

std::unique_ptr<Profile> LateBoundErp::createProfile() { return std::make_unique<LateBoundProfile>(host_); }

std::unique_ptr<Adressindex> LateBoundErp::createAdressindex(Connection& /*connection*/) {
  return std::make_unique<LateBoundAdressindex>(host_);
}

std::unique_ptr<FibuUebergabe> LateBoundErp::createFibuUebergabe() {
  return std::make_unique<LateBoundFibuUebergabe>(host_);
}

std::unique_ptr<Auskunft> LateBoundErp::createAuskunft() {
  return std::make_unique<LateBoundAuskunft>(host_);
}

} // namespace qx
