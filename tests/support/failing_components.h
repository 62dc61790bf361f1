// The outside of the component with one member that fails: decorators around whatever stands there otherwise.
#pragma once

#include "platform/bulk_staging.h"
#include "platform/environment.h"
#include "platform/maintenance.h"

#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// Which member fails, as "Session.PersonalNr"; what its failure says is "<member> fails".
struct Fault {
  void at(const char* member, std::string_view subject = {}) {
    reached.insert(member);
    if (failing != member || (!only.empty() && only != subject)) return;
    if (outOfMemory) throw std::bad_alloc();
    throw std::runtime_error(failing + " fails");
  }

  std::string failing;
  std::string only;              ///< the customer, article or protocol number whose call alone fails
  bool outOfMemory = false;      ///< raises `std::bad_alloc` instead
  std::set<std::string> reached; ///< every member that was called
};

/// Stands before another implementation of a port; `at` asks the fault, then gives that implementation.
template <class Port, class Holder = std::unique_ptr<Port>>
class Failing : public Port {
public:
  Failing(Holder inner, Fault& fault) : inner_(std::move(inner)), fault_(fault) {}

protected:
  Port& at(const char* member, std::string_view subject = {}) {
    fault_.at(member, subject);
    return *inner_;
  }
  Fault& fault() { return fault_; }

private:
  Holder inner_;
  Fault& fault_;
};

class FailingConversions final : public Failing<Umrechnungen, Umrechnungen*> {
public:
  using Failing::Failing;
  double GetUmrechnung(const UnitConversion& conversion) override {
    return at("Umrechnungen.GetUmrechnung").GetUmrechnung(conversion);
  }
};

class FailingSession final : public Failing<Session, std::shared_ptr<Session>> {
public:
  using Failing::Failing;
  void Connect(std::string_view id, std::string_view with) override {
    at("Session.Connect").Connect(id, with);
  }
  void Disconnect() override { at("Session.Disconnect").Disconnect(); }
  bool NotConnected() override { return at("Session.NotConnected").NotConnected(); }
  std::int32_t ErrorCode() override { return at("Session.ErrorCode").ErrorCode(); }
  void ShowError(std::string_view message) override { at("Session.ShowError").ShowError(message); }
  std::shared_ptr<Connection> connection() override {
    Session& session = at("Session.connection");
    return replaced ? replacement : session.connection();
  }
  std::string PersonalNr() override { return at("Session.PersonalNr").PersonalNr(); }
  std::string SessionID() override { return at("Session.SessionID").SessionID(); }
  std::string UserName() override { return at("Session.UserName").UserName(); }
  std::string GetSetting(std::string_view section, std::string_view key,
                         std::optional<std::string_view> fallback) override {
    return at("Session.GetSetting").GetSetting(section, key, fallback);
  }
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override {
    at("Session.SaveSetting").SaveSetting(section, key, value);
  }
  Date GetSessionDate() override { return at("Session.GetSessionDate").GetSessionDate(); }
  std::int16_t GetBuchungskreis() override { return at("Session.GetBuchungskreis").GetBuchungskreis(); }
  std::optional<std::int32_t> GetBelegnummer(std::string_view range, std::int16_t circle) override {
    return at("Session.GetBelegnummer").GetBelegnummer(range, circle);
  }
  qx::Umrechnungen& Umrechnungen() override {
    Session& session = at("Session.Umrechnungen");
    if (!conversions_) conversions_ = std::make_unique<FailingConversions>(&session.Umrechnungen(), fault());
    return *conversions_;
  }

  bool replaced = false; ///< the session hands out `replacement` as its connection
  std::shared_ptr<Connection> replacement;

private:
  std::unique_ptr<FailingConversions> conversions_;
};

class FailingProtokoll final : public Failing<Protokoll> {
public:
  using Failing::Failing;
  std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                              std::string_view list) override {
    return at("Protokoll.CreateProtokoll").CreateProtokoll(connection, title, kind, list);
  }
  bool OpenProtokoll(Connection& connection, std::string_view id) override {
    return at("Protokoll.OpenProtokoll").OpenProtokoll(connection, id);
  }
  void AddNewRecord() override { at("Protokoll.AddNewRecord").AddNewRecord(); }
  void SetField(int kind, int column, std::string_view value) override {
    at("Protokoll.SetField", column == 1 ? value : std::string_view()).SetField(kind, column, value);
  }
  void UpdateRecord() override { at("Protokoll.UpdateRecord").UpdateRecord(); }
};

class FailingPrices final : public Failing<Preisfindung> {
public:
  using Failing::Failing;
  void setConnection(Connection& connection) override {
    at("Preisfindung.setConnection").setConnection(connection);
  }
  void Init() override { at("Preisfindung.Init").Init(); }
  void Init(Connection& connection) override { at("Preisfindung.Init").Init(connection); }
  std::int32_t GetVKPreis(const PriceQuestion& question, SalesPrice& found) override {
    return at("Preisfindung.GetVKPreis", question.article).GetVKPreis(question, found);
  }
  double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) override {
    return at("Preisfindung.GetGesamtRabattWert").GetGesamtRabattWert(discounts, amount);
  }
  double GetGesamtRabattSatz(const StagedDiscounts& discounts) override {
    return at("Preisfindung.GetGesamtRabattSatz").GetGesamtRabattSatz(discounts);
  }
};

class FailingPurchasePrices final : public Failing<Einkaufspreisfindung> {
public:
  using Failing::Failing;
  std::optional<PurchasePrice> find(const PurchasePriceQuestion& question) override {
    return at("Einkaufspreisfindung.find").find(question);
  }
};

class FailingVersion final : public Failing<Version> {
public:
  using Failing::Failing;
  std::string version() override { return at("Version.version").version(); }
};

class FailingProfile final : public Failing<Profile> {
public:
  using Failing::Failing;
  std::string GetAppPath() override { return at("Profile.GetAppPath").GetAppPath(); }
};

class FailingIndex final : public Failing<Adressindex> {
public:
  using Failing::Failing;
  void CreateIndex(std::string_view customer, std::int16_t kind) override {
    at("Adressindex.CreateIndex", customer).CreateIndex(customer, kind);
  }
};

class FailingAccounting final : public Failing<FibuUebergabe> {
public:
  using Failing::Failing;
  void setConnection(Connection& connection) override {
    at("FibuUebergabe.setConnection").setConnection(connection);
  }
  OpenItemsBalance GetOPSaldo(std::string_view customer) override {
    return at("FibuUebergabe.GetOPSaldo").GetOPSaldo(customer);
  }
  double convert(double amount, std::string_view from, std::string_view to) override {
    return at("FibuUebergabe.convert").convert(amount, from, to);
  }
};

/// A component that cannot be created fails as "ErpComponents.createVersion" and so on.
class FailingErp final : public Failing<ErpComponents, ErpComponents*> {
public:
  using Failing::Failing;
  std::shared_ptr<Session> createSession() override {
    return std::make_shared<FailingSession>(at("ErpComponents.createSession").createSession(), fault());
  }
  std::unique_ptr<Protokoll> createProtokoll() override {
    return std::make_unique<FailingProtokoll>(at("ErpComponents.createProtokoll").createProtokoll(), fault());
  }
  std::unique_ptr<Preisfindung> createPreisfindung() override {
    return std::make_unique<FailingPrices>(at("ErpComponents.createPreisfindung").createPreisfindung(),
                                           fault());
  }
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) override {
    auto inner = at("ErpComponents.createEinkaufspreisfindung").createEinkaufspreisfindung(connection);
    if (!inner) return nullptr;
    return std::make_unique<FailingPurchasePrices>(std::move(inner), fault());
  }
  std::unique_ptr<Version> createVersion() override {
    return std::make_unique<FailingVersion>(at("ErpComponents.createVersion").createVersion(), fault());
  }
  std::unique_ptr<Profile> createProfile() override {
    return std::make_unique<FailingProfile>(at("ErpComponents.createProfile").createProfile(), fault());
  }
  std::unique_ptr<Adressindex> createAdressindex(Connection& connection) override {
    return std::make_unique<FailingIndex>(at("ErpComponents.createAdressindex").createAdressindex(connection),
                                          fault());
  }
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override {
    return std::make_unique<FailingAccounting>(at("ErpComponents.createFibuUebergabe").createFibuUebergabe(),
                                               fault());
  }
  std::unique_ptr<Auskunft> createAuskunft() override {
    return at("ErpComponents.createAuskunft").createAuskunft();
  }
};

class FailingDesktop final : public Failing<Desktop, Desktop*> {
public:
  using Failing::Failing;
  void show(const Message& message) override { at("Desktop.show").show(message); }
  bool ask(const Message& message) override { return at("Desktop.ask").ask(message); }
  std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                        FileUse use) override {
    return at("Desktop.chooseFile").chooseFile(title, filter, use);
  }
  void yield() override { at("Desktop.yield").yield(); }
};

class FailingView final : public Failing<JobView, JobView*> {
public:
  using Failing::Failing;
  void open() override { at("JobView.open").open(); }
  void close() override { at("JobView.close").close(); }
};

/// Keys, local settings, profile files and the liveness of sessions.
class FailingSystem final : public GuidSource, public LocalSettings, public IniFile, public SessionLiveness {
public:
  FailingSystem(Environment& inner, Fault& fault) : inner_(inner), fault_(fault) {}
  std::optional<GuidFields> create() override {
    fault_.at("GuidSource.create");
    return inner_.guids.create();
  }
  std::string read(std::string_view place, std::string_view section, std::string_view key) override {
    // The two kinds of store ask with the same words: a file has a path.
    if (place.find('/') != std::string_view::npos) {
      fault_.at("IniFile.read");
      return inner_.iniFile.read(place, section, key);
    }
    fault_.at("LocalSettings.read");
    return inner_.localSettings.read(place, section, key);
  }
  void write(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override {
    fault_.at("LocalSettings.write");
    inner_.localSettings.write(application, section, key, value);
  }
  std::optional<bool> isAlive(std::string_view sessionId) override {
    fault_.at("SessionLiveness.isAlive");
    return inner_.liveness.isAlive(sessionId);
  }

private:
  Environment& inner_;
  Fault& fault_;
};

/// Another environment's outside, where the fault says which member fails.
struct FailingWorld {
  explicit FailingWorld(Environment& inner)
      : components(&inner.components, fault), desktop(&inner.desktop, fault), view(&inner.jobView, fault),
        system(inner, fault), session(std::make_shared<FailingSession>(inner.session, fault)),
        environment{components,   desktop,           view,   inner.clock,      system,  system,
                    system,       inner.diagnostics, system, inner.connection, session, "",
                    inner.program} {}
  FailingWorld(const FailingWorld&) = delete;
  FailingWorld& operator=(const FailingWorld&) = delete;

  Fault fault;
  FailingErp components;
  FailingDesktop desktop;
  FailingView view;
  FailingSystem system;
  std::shared_ptr<FailingSession> session;
  Environment environment;
};

/// A connection that was closed under the component: nothing works any more.
class ClosedConnection final : public Connection {
public:
  const std::string& connectionString() const override { return nowhere_; }
  std::int64_t execute(const Sql& /*statement*/) override { fail(); }
  void put(std::string_view /*table*/, std::span<const ColumnValue> /*row*/, std::size_t /*keys*/) override {
    fail();
  }
  std::unique_ptr<BulkStaging> bulkStaging() override { fail(); }
  std::unique_ptr<Maintenance> maintenance() override { fail(); }
  std::vector<std::string> tableNames() override { fail(); }
  std::string_view rowKey() const override { return ""; }
  Sql beginsWith(const Sql& /*text*/, std::string_view /*prefix*/, bool /*afterPrefix*/) const override {
    return {};
  }
  Sql comesAfter(std::span<const ColumnValue> /*position*/) const override { return {}; }
  std::unique_ptr<Recordset> open(const Sql& /*statement*/) override { fail(); }
  std::unique_ptr<Recordset> openKeyset(const Sql& /*statement*/) override { fail(); }
  std::unique_ptr<Recordset> openStream(const Sql& /*statement*/) override { fail(); }
  bool ownsWork() const override { return true; }
  bool inWork() const override { return false; }
  void beginWork(BusyWait* /*wait*/) override { fail(); }
  void commitWork() override { fail(); }
  void rollbackWork() noexcept override {}
  void beginReading() override { fail(); }
  void setSavepoint() override { fail(); }
  void releaseSavepoint() override { fail(); }
  void rollbackToSavepoint() noexcept override {}

private:
  [[noreturn]] static void fail() { throw StoreError("closed", 21); }

  std::string nowhere_;
};

} // namespace qx
