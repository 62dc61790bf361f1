// The ERP's components called late-bound: the demo data come out as with the typed ports.
#include "automation_erp.h"

#include "adapters/hosted/host_adapters.h"
#include "adapters/hosted/hosted_erp.h"
#include "adapters/late_bound/late_bound_erp.h"
#include "adapters/late_bound/late_bound_session.h"
#include "erp/base_data.h"
#include "erp/demo_data.h"
#include "support/ado_objects.h"

#include <algorithm>
#include <map>
#include <set>

namespace qx::automation {
namespace {

/// An ERP with the demo data, typed or late-bound.
class DemoWorld : public DatabaseAccess {
public:
  DemoWorld() {
    WorkUnit unit(*erp.database);
    erp::fillDemoData(*erp.database);
    erp::stageDemoJobs(*erp.database, makeDate(2026, 11, 24));
    // What late-bound components cannot tell: purchase prices, and the marks of single discounts.
    execute("Delete From Einkaufspreise"_sql);
    execute(
        "Update Verkaufspreise Set KZRabattart = Null, KZRabatt1 = Null, KZRabatt2 = Null, KZRabatt3 = Null, "
        "Rabatt1 = Null, Rabatt2 = Null, Rabatt3 = Null"_sql);
    unit.commit();
  }
  Connection& connection() override { return *erp.database; }
  /// Every value of every table but the book of runs, which names the program, and the counters, which name
  /// the database, with its table, column and row.
  std::map<std::string, std::string> everything() {
    std::map<std::string, std::string> all;
    for (const std::string& table : connection().tableNames()) {
      if (table == "Importlaeufe" || table == "Zaehlerstaende") continue;
      const auto found = open("Select * From "_sql, name(table));
      for (int row = 1; !found->eof(); found->moveNext(), ++row)
        for (std::size_t i = 0; i < found->fieldCount(); ++i)
          all[table + "." + std::string(found->fieldName(i)) + " " + std::to_string(row)] =
              found->value(i).text();
    }
    return all;
  }

  TestErp erp;
  SqliteDatabase database;
  TestHost host{erp};
  std::shared_ptr<Component> component = Component::create(erp.environment, database, host);
  AutomationErp parts{erp, *component};
  LateBoundErp lateBound{parts};
  Environment lateEnvironment{lateBound,    erp.desktop,       erp.jobView, erp.clock,
                              erp.guids,    erp.localSettings, erp.iniFile, erp.diagnostics,
                              erp.liveness, nullptr,           nullptr,     ""};
};

/// Where two worlds differ, as "Table.Column row: first / second".
std::string differences(DemoWorld& first, DemoWorld& second) {
  std::string found;
  const auto firstValues = first.everything();
  const auto secondValues = second.everything();
  for (const auto& [place, value] : secondValues)
    if (const auto same = firstValues.find(place); same == firstValues.end() || same->second != value)
      found += place + ": " + (same == firstValues.end() ? "missing" : same->second) + " / " + value + "\n";
  if (firstValues.size() != secondValues.size()) found += "more values";
  return found;
}

/// An object of another process: nothing but its members is known. Counts the calls of `Disconnect`.
class Foreign final : public AutomationObject {
public:
  Foreign(ObjectPointer inner, int& disconnects) : inner_(std::move(inner)), disconnects_(disconnects) {}
  std::string_view className() const override { return inner_->className(); }
  std::optional<DispatchId> memberId(std::string_view name) override { return inner_->memberId(name); }
  std::optional<DispatchId> parameterId(DispatchId member, std::string_view name) override {
    return inner_->parameterId(member, name);
  }
  Variant invoke(DispatchId member, Access access, Arguments& arguments) override {
    if (member == inner_->memberId("Disconnect")) ++disconnects_;
    return inner_->invoke(member, access, arguments);
  }

private:
  ObjectPointer inner_;
  int& disconnects_;
};

/// A host with a connection of its own to the ERP's database.
class HostWorld : public DemoWorld {
public:
  /// The ERP's own view of that connection.
  class ErpConnection final : public RecordingConnection, public OfHost {
  public:
    ErpConnection(std::shared_ptr<Connection> inner, ObjectPointer object)
        : RecordingConnection(std::move(inner)), object_(std::move(object)) {}
    const ObjectPointer& hostObject() const override { return object_; }

  private:
    ObjectPointer object_;
  };
  class ErpObjects final : public HostObjects {
  public:
    explicit ErpObjects(HostWorld& world) : world_(world) {}
    std::shared_ptr<Connection> connectionOf(const ObjectPointer& object) override {
      EXPECT_EQ(object, world_.ado.connection());
      return world_.erpConnection;
    }
    std::shared_ptr<Session> sessionOf(const ObjectPointer&) override { return nullptr; }
    ObjectPointer recordsetOf(const ComboRows&) override { return nullptr; }

  private:
    HostWorld& world_;
  };

  /// `standalone`: the component has an ERP of its own, which works while the host hands over no session.
  explicit HostWorld(ErpComponents* standalone, std::shared_ptr<Session> session = nullptr)
      : hosted(adapters, standalone), environment{hosted,      erp.desktop,        erp.jobView,
                                                  erp.clock,   erp.guids,          erp.localSettings,
                                                  erp.iniFile, erp.diagnostics,    erp.liveness,
                                                  nullptr,     std::move(session), ""} {
    hosted.follow(environment);
  }
  HostWorld() : HostWorld(nullptr) {}

  AdoDatabase ado{erp.file};
  std::shared_ptr<Connection> erpConnection = std::make_shared<ErpConnection>(erp.database, ado.connection());
  erp::StandaloneErp erpParts{erpConnection,   erp.sessionClock, erp.desktop,
                              erp.diagnostics, erp.identity,     {"pruefer", std::nullopt, ""}};
  ErpObjects erpObjects{*this};
  std::shared_ptr<Component> erpSide = Component::create(erp.environment, database, erpObjects);
  AutomationErp registered{erpParts, erpConnection, *erpSide};
  int disconnects = 0;
  std::map<std::string, ObjectPointer, std::less<>> replaced; ///< components of the test's own
  HostAdapters adapters{[this](std::string_view progId) -> ObjectPointer {
    if (const auto own = replaced.find(progId); own != replaced.end()) return own->second;
    if (progId.starts_with("ADODB.")) return ado.create(progId);
    return std::make_shared<Foreign>(registered.create(progId), disconnects);
  }};
  HostedErp hosted;
  Environment environment;
  std::shared_ptr<Component> ours = Component::create(environment, database, adapters);
};

void enableEverything(TestErp& erp) {
  erp.setOption("KreditlimitAuftrag", "1");
  erp.setOption("WarnungLagerbestand", "1");
  erp.setOption("AutomatischVerarbeiten", "1");
}

} // namespace

TEST(LateBoundErp, ProcessesTheDemoJobsAsTheTypedOneDoes) {
  DemoWorld typed;
  enableEverything(typed.erp);
  ImportJobObject2 engine(typed.erp.environment);
  ASSERT_TRUE(engine.ProcessJobs());

  DemoWorld late;
  enableEverything(late.erp);
  ImportJobObject2 lateEngine(late.lateEnvironment);
  ASSERT_TRUE(lateEngine.WWSSession()) << late.erp.desktop.texts();
  ASSERT_TRUE(lateEngine.ProcessJobs()) << late.erp.desktop.texts();

  EXPECT_EQ(differences(late, typed), "");
  EXPECT_EQ(late.erp.desktop.texts(), typed.erp.desktop.texts());
  const std::set<std::string> created(late.parts.created.begin(), late.parts.created.end());
  EXPECT_EQ(created,
            (std::set<std::string>{"Norvalis.FibuUebergabeObject", "Norvalis.Session", "QXHProto.Protokoll",
                                   "qxAdrIdx.Adressindex", "qxPLU.clsPLU", "qxWWSVer.Version"}));
}

TEST(HostedErp, ProcessesTheDemoJobsWithTheSessionOfTheHost) {
  DemoWorld typed;
  enableEverything(typed.erp);
  ImportJobObject2 engine(typed.erp.environment);
  ASSERT_TRUE(engine.ProcessJobs());

  HostWorld host;
  enableEverything(host.erp);
  const ObjectPointer session = host.adapters.create("Norvalis.Session");
  call(*session, "Connect", {"", ""});
  const ObjectPointer hosted = host.ours->createObject("ImportJobObject2");
  put(*hosted, "Session", session);
  EXPECT_EQ(objectOf(get(*hosted, "Session")), session);
  EXPECT_EQ(objectOf(get(*hosted, "ActiveConnection")), host.ado.connection());
  EXPECT_EQ(shown(call(*hosted, "ProcessJobs")), "True") << host.erp.desktop.texts();
  EXPECT_EQ(differences(host, typed), "");
  EXPECT_EQ(host.erp.desktop.texts(), typed.erp.desktop.texts());
  EXPECT_EQ(host.ado.begun, 0);
  EXPECT_EQ(std::set<std::string>(host.ado.opened.begin(), host.ado.opened.end()),
            std::set<std::string>{"3,1,3"});
}

TEST(HostedErp, ProcessesTheDemoJobsOnAConnectionOfTheHostWithoutASession) {
  DemoWorld typed;
  enableEverything(typed.erp);
  ImportJobObject2 engine(typed.erp.environment);
  ASSERT_TRUE(engine.ProcessJobs());

  DemoWorld other;
  HostWorld host(&other.erp.components);
  host.environment.session = host.erp.environment.session;
  enableEverything(host.erp);
  const ObjectPointer hosted = host.ours->createObject("ImportJobObject2");
  put(*hosted, "ActiveConnection", host.ado.connection());
  EXPECT_EQ(shown(call(*hosted, "ProcessJobs")), "True") << host.erp.desktop.texts();
  EXPECT_EQ(differences(host, typed), "");
  EXPECT_EQ(host.registered.created, std::vector<std::string>()) << "no session, no component of the host";
}

TEST(HostedErp, ConnectsToTheRegisteredErpAndLeavesItWithTheLastEngine) {
  HostWorld host;
  ObjectPointer first = host.ours->createObject("ImportJobObject2");
  EXPECT_EQ(shown(call(*first, "WWSSession")), "True") << host.erp.desktop.texts();
  ObjectPointer second = host.ours->createObject("ImportJobObject2");
  first.reset();
  EXPECT_EQ(host.disconnects, 0);
  EXPECT_EQ(shown(call(*second, "ProcessJobs", {Variant::missing(), 1})), "True");
  const ObjectPointer customer = host.ours->createObject("Kunde");
  second.reset();
  EXPECT_EQ(host.disconnects, 1);
  put(*customer, "JobID", "SPAET");
  call(*customer, "AddItem");
  EXPECT_EQ(host.count("Select Count(*) From ImportKopf Where JobID = 'SPAET'"_sql), 1)
      << "the connection is still the host's";
  host.registered.missing = {"Norvalis.Session"};
  const ObjectPointer third = host.ours->createObject("ImportJobObject2");
  EXPECT_EQ(shown(call(*third, "WWSSession")), "False");
  EXPECT_EQ(host.erp.desktop.shown.back().text,
            "Fehler beim Verbinden mit der Warenwirtschaft: Die Komponente 'Norvalis.Session' kann nicht "
            "erzeugt werden.");
  EXPECT_EQ(shown(get(*third, "ActiveConnection")), "Nothing");
}

TEST(HostedErp, LetsTheOtherJobsContinueWhenAComponentFailsInTheMiddleOfARun) {
  HostWorld host;
  const auto index = ScriptObject::make("Adressindex");
  int calls = 0;
  index->with("CreateIndex", [&](Access, Arguments&) -> Variant {
    if (++calls == 3) throw AutomationError(ErrorNumber::Failed, "Der Index ist beschädigt.");
    return {};
  });
  host.replaced["qxAdrIdx.Adressindex"] = index;
  host.registered.missing = {"qxWWSVer.Version", "Norvalis.FibuUebergabeObject"};
  const ObjectPointer engine = host.ours->createObject("ImportJobObject2");
  ASSERT_EQ(shown(call(*engine, "WWSSession")), "True");
  EXPECT_EQ(shown(call(*engine, "ProcessJobs", {Variant::missing(), 1})), "True");
  EXPECT_GT(calls, 3);
  EXPECT_EQ(host.count("Select Count(*) From ImportKopf Where JobType = 10"_sql), 0);
  EXPECT_TRUE(std::ranges::any_of(host.erp.diagnostics.entries, [](const auto& entry) {
    return entry.what == "Der Index ist beschädigt.";
  }));
}

TEST(HostedErp, TakesNothingForAConnectionOrASessionThatIsNone) {
  HostWorld host;
  const ObjectPointer engine = host.ours->createObject("ImportJobObject2");
  const ObjectPointer customer = host.ours->createObject("Kunde");
  EXPECT_EQ(
      outcome([&] { put(*engine, "ActiveConnection", customer); }),
      "13: ImportJobObject2.ActiveConnection: Ein Objekt der Klasse Kunde ist keine Datenbankverbindung.");
  EXPECT_EQ(outcome([&] { put(*engine, "Session", host.ado.connection()); }),
            "13: ImportJobObject2.Session: Ein Objekt der Klasse Connection ist keine Sitzung der "
            "Warenwirtschaft.");
  EXPECT_EQ(numberOf([&] { put(*engine, "Session", "Sitzung"); }), "13");
  put(*engine, "ActiveConnection", host.ado.connection());
  put(*engine, "ActiveConnection", Variant::nothing());
  EXPECT_EQ(shown(get(*engine, "ActiveConnection")), "Nothing");
  // Closed by the host meanwhile.
  put(*engine, "ActiveConnection", host.ado.connection());
  host.ado.open = false;
  EXPECT_EQ(shown(call(*engine, "ConnectDB")), "False");
  EXPECT_EQ(host.erp.desktop.shown.size(), 1U);
}

TEST(HostedErp, FillsTheDropDownListsOfTheHostWithRecordSets) {
  HostWorld host;
  const ObjectPointer rows =
      host.adapters.recordsetOf({{"Text", "Schlüssel"}, {{"Paket", "PO"}, {"Post", "BR"}}});
  call(*rows, "MoveFirst");
  call(*rows, "Move", {std::int32_t{1}});
  const ObjectPointer field = objectOf(call(*objectOf(get(*rows, "Fields")), "Item", {"Schlüssel"}));
  EXPECT_EQ(shown(get(*field, "Value")), "'BR'");
  EXPECT_EQ(shown(get(*rows, "Bookmark")), "2#");
  EXPECT_EQ(shown(get(*rows, "RecordCount")), "2&");
}

TEST_F(AutomationTest, LateBoundComponentsAreAskedByTheNamesOfTheirMembers) {
  AutomationErp parts(erp, *component);
  LateBoundErp lateBound(parts);
  add("OffenePosten", {{"Kundennummer", "20001"}, {"Betrag", *Money::parse("12.5")}, {"Währung", "CHF"}});
  const auto accounts = lateBound.createFibuUebergabe();
  accounts->setConnection(connection());
  const OpenItemsBalance balance = accounts->GetOPSaldo("20001");
  EXPECT_EQ(balance.amount, 12.5);
  EXPECT_EQ(balance.currency, "CHF");
  EXPECT_EQ(accounts->GetOPSaldo("unbekannt").currency, "");
  EXPECT_EQ(lateBound.createProfile()->GetAppPath(), erp.folder.path().string());

  const auto item = ScriptObject::make("Item");
  for (const char* name : {"ItemName", "ItemCaption", "ItemType", "DefaultItem", "DataDepending"})
    item->holding(name);
  const auto items = ScriptObject::make("Items");
  items->with("Add", [&](Access, Arguments&) -> Variant { return ObjectPointer(item); });
  const auto window = ScriptObject::make("AuskunftObject");
  for (const char* name : {"Session", "RecordSource", "Caption", "Profile", "Style", "Criteria", "Sort"})
    window->holding(name);
  Variant result = 1;
  window->with("PopupItems", [&](Access, Arguments&) -> Variant { return ObjectPointer(items); })
      .with("Show", [](Access, Arguments&) -> Variant { return {}; })
      .with("result", [&](Access, Arguments&) -> Variant { return result; })
      .with("ResultDataItems", [](Access, Arguments& arguments) -> Variant {
        const auto data = ScriptObject::make("Data");
        data->holding("DataValue", "Wert von " + textOf(arguments.positional.front()));
        return ObjectPointer(data);
      });
  parts.lookup = window;
  LateBoundSession session(ObjectPointer(ScriptObject::make("Sitzung")), parts);
  const LookupRequest request{.recordSource = "AUSK_Adressauskunft",
                              .caption = "Adressauskunft zu Kunde O'Neill",
                              .profile = "Profil",
                              .acceptCaption = "Übernehmen",
                              .criteria = sql("Kundennummer='"_sql, value("O'Neill"), "'"_sql),
                              .sort = "Ort",
                              .resultFields = {"Kundennummer", "Adressnummer"}};
  EXPECT_EQ(lateBound.createAuskunft()->show(session, request),
            (std::vector<std::string>{"Wert von Kundennummer", "Wert von Adressnummer"}));
  EXPECT_EQ(window->log,
            "Session=Sitzung RecordSource='AUSK_Adressauskunft' Caption='Adressauskunft zu Kunde "
            "O'Neill' Profile='Profil' Style=0& Criteria='Kundennummer='O'Neill'' Sort='Ort' ");
  EXPECT_EQ(item->log, "ItemName='Uebernehmen' ItemCaption='Übernehmen' ItemType=0& DefaultItem=True "
                       "DataDepending=True ");
  result = 0;
  EXPECT_EQ(lateBound.createAuskunft()->show(session, request), std::vector<std::string>());
}

TEST_F(AutomationTest, LateBoundPricesComeBackByReference) {
  AutomationErp parts(erp, *component);
  LateBoundErp lateBound(parts);
  const PriceQuestion question{"20001", "A100", 10, "ST", makeDate(2026, 11, 24)};
  const auto typed = erp.components.createPreisfindung();
  const auto late = lateBound.createPreisfindung();
  typed->Init(connection());
  late->setConnection(connection());
  late->Init(connection());
  SalesPrice expected;
  SalesPrice found;
  EXPECT_EQ(late->GetVKPreis(question, found), typed->GetVKPreis(question, expected));
  EXPECT_EQ(found.price, 9);
  EXPECT_EQ(found.calculatedPrice, 9);
  EXPECT_EQ(found.priceUnit, 1);
  EXPECT_EQ(found.discount, expected.discount);
  EXPECT_EQ(found.discountKind, expected.discountKind);
  EXPECT_EQ(found.discounts.kind, "A");
  EXPECT_EQ(found.discounts.values, (std::array<double, 3>{10, 5, 0}));
  EXPECT_EQ(found.source, expected.source);
  EXPECT_EQ(late->GetVKPreis({"20001", "NICHTS", 1, "ST", std::nullopt}, found), Preisfindung::notFound);
  EXPECT_EQ(late->GetGesamtRabattWert(expected.discounts, 50),
            typed->GetGesamtRabattWert(expected.discounts, 50));
  EXPECT_EQ(late->GetGesamtRabattSatz(expected.discounts), typed->GetGesamtRabattSatz(expected.discounts));
  parts.missing = {"qxPLU.clsPLU"};
  EXPECT_EQ(outcome([&] { lateBound.createPreisfindung(); }),
            "429: Die Komponente 'qxPLU.clsPLU' kann nicht erzeugt werden.");
}

} // namespace qx::automation
