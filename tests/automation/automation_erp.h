// The standalone ERP as components that are called late-bound.
#pragma once

#include "automation_fixture.h"

#include "adapters/late_bound/host.h"
#include "automation/classes/contents.h"
#include "automation/member.h"

#include <memory>
#include <string>
#include <vector>

namespace qx::automation {

template <>
struct ClassOf<Protokoll> {
  static constexpr std::string_view name = "Protokoll";
  static const ClassTable& table() {
    using M = MembersOf<Protokoll>;
    using Text = std::string_view;
    using Database = const std::shared_ptr<Connection>&;
    static const ClassTable all(
        name, "",
        {M::method(
             "CreateProtokoll", "",
             +[](Protokoll& it, Database on, Text title, Text kind, Text list) -> std::string {
               return it.CreateProtokoll(*on, title, kind, list);
             },
             "Connection", "Titel", "Art", "Liste"),
         M::method(
             "OpenProtokoll", "",
             +[](Protokoll& it, Database on, Text id) -> bool { return it.OpenProtokoll(*on, id); },
             "Connection", "ID"),
         M::method("AddNewRecord", "", &Protokoll::AddNewRecord),
         M::method("SetField", "", &Protokoll::SetField, "Art", "Spalte", "Wert"),
         M::method("UpdateRecord", "", &Protokoll::UpdateRecord)});
    return all;
  }
};

template <>
struct ClassOf<Preisfindung> {
  static constexpr std::string_view name = "clsPLU";
  static StagedDiscounts staged(std::string_view kind, std::string_view mark1, std::string_view mark2,
                                std::string_view mark3, double value1, double value2, double value3) {
    return {std::string(kind),
            {std::string(mark1), std::string(mark2), std::string(mark3)},
            {value1, value2, value3}};
  }
  static const ClassTable& table() {
    using M = MembersOf<Preisfindung>;
    using Text = std::string_view;
    using Database = const std::shared_ptr<Connection>&;
    static const ClassTable all(
        name, "",
        {M::setter(
             "Connection", "", +[](Preisfindung& it, Database on) { it.setConnection(*on); }),
         M::method(
             "Init", "", +[](Preisfindung& it, Database on) { on ? it.Init(*on) : it.Init(); },
             optional("Connection")),
         M::method(
             "GetVKPreis", "",
             +[](Preisfindung& it, Text customer, Text article, double quantity, Text unit, const Value& date,
                 double& price, double& calculated, double& priceUnit, double& discount, std::string& kind,
                 std::string& stagedKind, double& value1, double& value2, double& value3,
                 std::string& source) -> std::int32_t {
               SalesPrice found;
               const auto moment = date.moment();
               const std::int32_t result = it.GetVKPreis(
                   {customer, article, quantity, unit, moment ? std::optional(moment->date) : std::nullopt},
                   found);
               price = found.price;
               calculated = found.calculatedPrice;
               priceUnit = found.priceUnit;
               discount = found.discount;
               kind = found.discountKind;
               stagedKind = found.discounts.kind;
               value1 = found.discounts.values[0];
               value2 = found.discounts.values[1];
               value3 = found.discounts.values[2];
               source = found.source;
               return result;
             },
             "Kunde", "Artikel", "Menge", "Einheit", "Datum", "Preis", "KalkPreis", "Preiseinheit", "Rabatt",
             "Rabattart", "KZRabattart", "Rabatt1", "Rabatt2", "Rabatt3", "Preisfindung"),
         M::method(
             "GetGesamtRabattWert", "",
             +[](Preisfindung& it, Text kind, Text mark1, Text mark2, Text mark3, double value1,
                 double value2, double value3, double amount) -> double {
               return it.GetGesamtRabattWert(staged(kind, mark1, mark2, mark3, value1, value2, value3),
                                             amount);
             },
             "Art", "KZ1", "KZ2", "KZ3", "Rabatt1", "Rabatt2", "Rabatt3", "Betrag"),
         M::method(
             "GetGesamtRabattSatz", "",
             +[](Preisfindung& it, Text kind, Text mark1, Text mark2, Text mark3, double value1,
                 double value2, double value3) -> double {
               return it.GetGesamtRabattSatz(staged(kind, mark1, mark2, mark3, value1, value2, value3));
             },
             "Art", "KZ1", "KZ2", "KZ3", "Rabatt1", "Rabatt2", "Rabatt3")});
    return all;
  }
};

template <>
struct ClassOf<Version> {
  static constexpr std::string_view name = "Version";
  static const ClassTable& table() {
    static const ClassTable all(name, "", {MembersOf<Version>::property("Version", "", &Version::version)});
    return all;
  }
};

template <>
struct ClassOf<Profile> {
  static constexpr std::string_view name = "WSProfile";
  static const ClassTable& table() {
    static const ClassTable all(name, "",
                                {MembersOf<Profile>::method("GetAppPath", "", &Profile::GetAppPath)});
    return all;
  }
};

template <>
struct ClassOf<Adressindex> {
  static constexpr std::string_view name = "Adressindex";
  static const ClassTable& table() {
    static const ClassTable all(name, "",
                                {MembersOf<Adressindex>::method("CreateIndex", "", &Adressindex::CreateIndex,
                                                                "Kundennummer", "Art")});
    return all;
  }
};

template <>
struct ClassOf<FibuUebergabe> {
  static constexpr std::string_view name = "FibuUebergabeObject";
  static const ClassTable& table() {
    using M = MembersOf<FibuUebergabe>;
    static const ClassTable all(
        name, "",
        {M::setter(
             "Connection", "",
             +[](FibuUebergabe& it, const std::shared_ptr<Connection>& on) { it.setConnection(*on); }),
         M::method(
             "GetOPSaldo", "",
             +[](FibuUebergabe& it, std::string_view customer, std::string& currency) -> double {
               OpenItemsBalance balance = it.GetOPSaldo(customer);
               currency = std::move(balance.currency);
               return balance.amount;
             },
             "Kundennummer", "Währung")});
    return all;
  }
};

/// Gives the components of a standalone ERP by their ProgIDs and writes down which were created.
class AutomationErp final : public AutomationHost {
public:
  AutomationErp(TestErp& erp, Component& component)
      : AutomationErp(erp.components, erp.database, component) {}
  AutomationErp(erp::StandaloneErp& parts, std::shared_ptr<Connection> database, Component& component)
      : parts_(parts), database_(std::move(database)), component_(component) {}

  ObjectPointer create(std::string_view progId) override {
    created.emplace_back(progId);
    if (std::find(missing.begin(), missing.end(), progId) == missing.end()) {
      if (progId == "Norvalis.Session") return component_.objectFor(parts_.createSession());
      if (progId == "QXHProto.Protokoll") return component_.objectFor(shared(parts_.createProtokoll()));
      if (progId == "qxPLU.clsPLU") return component_.objectFor(shared(parts_.createPreisfindung()));
      if (progId == "qxWWSVer.Version") return component_.objectFor(shared(parts_.createVersion()));
      if (progId == "qxWSPro.WSProfile") return component_.objectFor(shared(parts_.createProfile()));
      if (progId == "qxAdrIdx.Adressindex")
        return component_.objectFor(shared(parts_.createAdressindex(*database_)));
      if (progId == "Norvalis.FibuUebergabeObject")
        return component_.objectFor(shared(parts_.createFibuUebergabe()));
      if (progId == "Norvalis.AuskunftObject" && lookup) return lookup;
    }
    throw AutomationError(ErrorNumber::CannotCreate,
                          "Die Komponente '" + std::string(progId) + "' kann nicht erzeugt werden.");
  }
  std::shared_ptr<Connection> connectionOf(const ObjectPointer& object) override {
    return targetOf<Connection>(object);
  }
  ObjectPointer objectOf(Connection& connection) override {
    EXPECT_EQ(&connection, database_.get());
    return component_.objectFor(database_);
  }

  std::vector<std::string> created;
  std::vector<std::string> missing;
  ObjectPointer lookup;

private:
  template <class Port>
  static std::shared_ptr<Port> shared(std::unique_ptr<Port> port) {
    return port;
  }

  erp::StandaloneErp& parts_;
  std::shared_ptr<Connection> database_;
  Component& component_;
};

} // namespace qx::automation
