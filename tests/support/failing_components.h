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

class FailingConversions final : public Umrechnungen {
public:
  FailingConversions(Umrechnungen& inner, Fault& fault) : inner_(inner), fault_(fault) {}
  double GetUmrechnung(const UnitConversion& conversion) override {
    fault_.at("Umrechnungen.GetUmrechnung");
    return inner_.GetUmrechnung(conversion);
  }

private:
  Umrechnungen& inner_;
  Fault& fault_;
};

class FailingSession final : public Session {
public:
  FailingSession(std::shared_ptr<Session> inner, Fault& fault) : inner_(std::move(inner)), fault_(fault) {}

  void Connect(std::string_view id, std::string_view with) override { reach("Connect").Connect(id, with); }
  void Disconnect() override { reach("Disconnect").Disconnect(); }
  bool NotConnected() override { return reach("NotConnected").NotConnected(); }
  std::int32_t ErrorCode() override { return reach("ErrorCode").ErrorCode(); }
  void ShowError(std::string_view message) override { reach("ShowError").ShowError(message); }
  std::shared_ptr<Connection> connection() override {
    Session& session = reach("connection");
    return replaced ? replacement : session.connection();
  }
  std::string PersonalNr() override { return reach("PersonalNr").PersonalNr(); }
  std::string SessionID() override { return reach("SessionID").SessionID(); }
  std::string UserName() override { return reach("UserName").UserName(); }
  std::string GetSetting(std::string_view section, std::string_view key,
                         std::optional<std::string_view> fallback) override {
    return reach("GetSetting").GetSetting(section, key, fallback);
  }
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override {
    reach("SaveSetting").SaveSetting(section, key, value);
  }
  Date GetSessionDate() override { return reach("GetSessionDate").GetSessionDate(); }
  std::int16_t GetBuchungskreis() override { return reach("GetBuchungskreis").GetBuchungskreis(); }
  std::optional<std::int32_t> GetBelegnummer(std::string_view range, std::int16_t circle) override {
    return reach("GetBelegnummer").GetBelegnummer(range, circle);
  }
  qx::Umrechnungen& Umrechnungen() override {
    Session& session = reach("Umrechnungen");
    if (!conversions_) conversions_ = std::make_unique<FailingConversions>(session.Umrechnungen(), fault_);
    return *conversions_;
  }

  bool replaced = false; ///< the session hands out `replacement` as its connection
  std::shared_ptr<Connection> replacement;

private:
  Session& reach(const char* member) {
    fault_.at((std::string("Session.") + member).c_str());
    return *inner_;
  }

  std::shared_ptr<Session> inner_;
  Fault& fault_;
  std::unique_ptr<FailingConversions> conversions_;
};

class FailingProtokoll final : public Protokoll {
public:
  FailingProtokoll(std::unique_ptr<Protokoll> inner, Fault& fault)
      : inner_(std::move(inner)), fault_(fault) {}

  std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                              std::string_view list) override {
    fault_.at("Protokoll.CreateProtokoll");
    return inner_->CreateProtokoll(connection, title, kind, list);
  }
  bool OpenProtokoll(Connection& connection, std::string_view id) override {
    fault_.at("Protokoll.OpenProtokoll");
    return inner_->OpenProtokoll(connection, id);
  }
  void AddNewRecord() override {
    fault_.at("Protokoll.AddNewRecord");
    inner_->AddNewRecord();
  }
  void SetField(int kind, int column, std::string_view value) override {
    fault_.at("Protokoll.SetField", column == 1 ? value : std::string_view());
    inner_->SetField(kind, column, value);
  }
  void UpdateRecord() override {
    fault_.at("Protokoll.UpdateRecord");
    inner_->UpdateRecord();
  }

private:
  std::unique_ptr<Protokoll> inner_;
  Fault& fault_;
};

class FailingPrices final : public Preisfindung {
public:
  FailingPrices(std::unique_ptr<Preisfindung> inner, Fault& fault)
      : inner_(std::move(inner)), fault_(fault) {}

  void setConnection(Connection& connection) override {
    fault_.at("Preisfindung.setConnection");
    inner_->setConnection(connection);
  }
  void Init() override {
    fault_.at("Preisfindung.Init");
    inner_->Init();
  }
  void Init(Connection& connection) override {
    fault_.at("Preisfindung.Init");
    inner_->Init(connection);
  }
  std::int32_t GetVKPreis(const PriceQuestion& question, SalesPrice& found) override {
    fault_.at("Preisfindung.GetVKPreis", question.article);
    return inner_->GetVKPreis(question, found);
  }
  double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) override {
    fault_.at("Preisfindung.GetGesamtRabattWert");
    return inner_->GetGesamtRabattWert(discounts, amount);
  }
  double GetGesamtRabattSatz(const StagedDiscounts& discounts) override {
    fault_.at("Preisfindung.GetGesamtRabattSatz");
    return inner_->GetGesamtRabattSatz(discounts);
  }

private:
  std::unique_ptr<Preisfindung> inner_;
  Fault& fault_;
};

class FailingPurchasePrices final : public Einkaufspreisfindung {
public:
  FailingPurchasePrices(std::unique_ptr<Einkaufspreisfindung> inner, Fault& fault)
      : inner_(std::move(inner)), fault_(fault) {}
  std::optional<PurchasePrice> find(const PurchasePriceQuestion& question) override {
    fault_.at("Einkaufspreisfindung.find");
    return inner_->find(question);
  }

private:
  std::unique_ptr<Einkaufspreisfindung> inner_;
  Fault& fault_;
};

class FailingVersion final : public Version {
public:
  FailingVersion(std::unique_ptr<Version> inner, Fault& fault) : inner_(std::move(inner)), fault_(fault) {}
  std::string version() override {
    fault_.at("Version.version");
    return inner_->version();
  }

private:
  std::unique_ptr<Version> inner_;
  Fault& fault_;
};

class FailingProfile final : public Profile {
public:
  FailingProfile(std::unique_ptr<Profile> inner, Fault& fault) : inner_(std::move(inner)), fault_(fault) {}
  std::string GetAppPath() override {
    fault_.at("Profile.GetAppPath");
    return inner_->GetAppPath();
  }

private:
  std::unique_ptr<Profile> inner_;
  Fault& fault_;
};

class FailingIndex final : public Adressindex {
public:
  FailingIndex(std::unique_ptr<Adressindex> inner, Fault& fault) : inner_(std::move(inner)), fault_(fault) {}
  void CreateIndex(std::string_view customer, std::int16_t kind) override {
    fault_.at("Adressindex.CreateIndex", customer);
    inner_->CreateIndex(customer, kind);
  }

private:
  std::unique_ptr<Adressindex> inner_;
  Fault& fault_;
};

class FailingAccounting final : public FibuUebergabe {
public:
  FailingAccounting(std::unique_ptr<FibuUebergabe> inner, Fault& fault)
      : inner_(std::move(inner)), fault_(fault) {}
  void setConnection(Connection& connection) override {
    fault_.at("FibuUebergabe.setConnection");
    inner_->setConnection(connection);
  }
  OpenItemsBalance GetOPSaldo(std::string_view customer) override {
    fault_.at("FibuUebergabe.GetOPSaldo");
    return inner_->GetOPSaldo(customer);
  }
  double convert(double amount, std::string_view from, std::string_view to) override {
    fault_.at("FibuUebergabe.convert");
    return inner_->convert(amount, from, to);
  }

private:
  std::unique_ptr<FibuUebergabe> inner_;
  Fault& fault_;
};

/// A component that cannot be created fails as "ErpComponents.createVersion" and so on.
class FailingErp final : public ErpComponents {
public:
  FailingErp(ErpComponents& inner, Fault& fault) : inner_(inner), fault_(fault) {}

  std::shared_ptr<Session> createSession() override {
    return std::make_shared<FailingSession>(reach("createSession").createSession(), fault_);
  }
  std::unique_ptr<Protokoll> createProtokoll() override {
    return std::make_unique<FailingProtokoll>(reach("createProtokoll").createProtokoll(), fault_);
  }
  std::unique_ptr<Preisfindung> createPreisfindung() override {
    return std::make_unique<FailingPrices>(reach("createPreisfindung").createPreisfindung(), fault_);
  }
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) override {
    auto inner = reach("createEinkaufspreisfindung").createEinkaufspreisfindung(connection);
    if (!inner) return nullptr;
    return std::make_unique<FailingPurchasePrices>(std::move(inner), fault_);
  }
  std::unique_ptr<Version> createVersion() override {
    return std::make_unique<FailingVersion>(reach("createVersion").createVersion(), fault_);
  }
  std::unique_ptr<Profile> createProfile() override {
    return std::make_unique<FailingProfile>(reach("createProfile").createProfile(), fault_);
  }
  std::unique_ptr<Adressindex> createAdressindex(Connection& connection) override {
    return std::make_unique<FailingIndex>(reach("createAdressindex").createAdressindex(connection), fault_);
  }
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override {
    return std::make_unique<FailingAccounting>(reach("createFibuUebergabe").createFibuUebergabe(), fault_);
  }
  std::unique_ptr<Auskunft> createAuskunft() override { return reach("createAuskunft").createAuskunft(); }

private:
  ErpComponents& reach(const char* member) {
    fault_.at((std::string("ErpComponents.") + member).c_str());
    return inner_;
  }

  ErpComponents& inner_;
  Fault& fault_;
};

class FailingDesktop final : public Desktop {
public:
  FailingDesktop(Desktop& inner, Fault& fault) : inner_(inner), fault_(fault) {}
  void show(const Message& message) override {
    fault_.at("Desktop.show");
    inner_.show(message);
  }
  bool ask(const Message& message) override {
    fault_.at("Desktop.ask");
    return inner_.ask(message);
  }
  std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                        bool forWriting) override {
    fault_.at("Desktop.chooseFile");
    return inner_.chooseFile(title, filter, forWriting);
  }
  void yield() override {
    fault_.at("Desktop.yield");
    inner_.yield();
  }

private:
  Desktop& inner_;
  Fault& fault_;
};

class FailingView final : public JobView {
public:
  FailingView(JobView& inner, Fault& fault) : inner_(inner), fault_(fault) {}
  void open() override {
    fault_.at("JobView.open");
    inner_.open();
  }
  void close() override {
    fault_.at("JobView.close");
    inner_.close();
  }

private:
  JobView& inner_;
  Fault& fault_;
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
      : components(inner.components, fault), desktop(inner.desktop, fault), view(inner.jobView, fault),
        system(inner, fault), session(std::make_shared<FailingSession>(inner.session, fault)),
        environment{components, desktop,           view,   inner.clock,      system,  system,
                    system,     inner.diagnostics, system, inner.connection, session, ""} {}
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
