// Every public member where the outside fails: no connection, a dead one, one that refuses, a component that
// raises.
#include "order_fixture.h"

#include "store/import_job_object.h"
#include "store/job_file_export.h"
#include "support/failing_components.h"
#include "support/recording_connection.h"
#include "support/words.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <set>

namespace qx {
namespace {

/// A drop-down list of no interest.
class AnyList final : public ComboTarget {
public:
  void setRowSource(ComboRows /*rows*/) override {}
  void hideColumn(int /*index*/) override {}
  void setColumnHeaders(bool /*shown*/) override {}
  void setBookmark(std::size_t /*row*/) override {}
};

/// One engine whose outside can fail.
struct Stage {
  explicit Stage(TestErp& erp) : erp(erp), world(erp.environment) {}

  TestErp& erp;
  FailingWorld world;
  RecordingEvents events;
  std::optional<ImportJobObject2> made;
  ImportJobObject2& engine() {
    if (!made) made.emplace(world.environment);
    return *made;
  }
};

struct Member {
  std::string_view name;
  std::function<std::string(Stage&)> call;
};

std::string yes(bool answer) { return answer ? "yes" : "no"; }
std::string counts(const RunReport& report) {
  return std::to_string(report.done) + "/" + std::to_string(report.warning) + "/" +
         std::to_string(report.error);
}

std::string joined(const Findings& findings) {
  std::string all;
  for (const std::string& finding : findings.texts()) all += finding + ";";
  return all;
}

std::string text;
std::int16_t size = 0;

template <auto Fill>
std::string filled(Stage& stage) {
  AnyList list;
  const ComboLists& lists = stage.engine();
  return yes((lists.*Fill)(list, "30"));
}

Member silent(std::string_view name, std::function<void(ImportJobObject2&)> call) {
  return {name, [call = std::move(call)](Stage& s) { return call(s.engine()), std::string(); }};
}

const std::vector<Member>& members() {
  using E = ImportJobObject2;
  static const std::vector<Member> all{
      {"constructor", [](Stage& s) { return yes(s.engine().Session() != nullptr); }},
      {"ConnectDB", [](Stage& s) { return yes(s.engine().ConnectDB()); }},
      {"WWSSession",
       [](Stage& s) {
         const bool connected = s.engine().WWSSession();
         return yes(connected) + yes(s.engine().Session() != nullptr) +
                yes(s.engine().ActiveConnection() != nullptr);
       }},
      {"Session",
       [](Stage& s) {
         const auto next = std::make_shared<FailingSession>(s.erp.environment.session, s.world.fault);
         s.engine().Session(next);
         return yes(s.engine().Session() == next);
       }},
      {"ActiveConnection",
       [](Stage& s) {
         s.engine().ActiveConnection(s.erp.hostConnection());
         return yes(s.engine().ActiveConnection() != s.erp.database);
       }},
      {"JobViewShow",
       [](Stage& s) {
         s.engine().JobViewShow();
         return yes(s.erp.jobView.isOpen) + yes(s.engine().importLock().held()) +
                std::to_string(s.events.unloads);
       }},
      {"Unload",
       [](Stage& s) {
         s.engine().Unload();
         return std::to_string(s.events.unloads) +
                (s.engine().ViewFormLoad == qxtViewJobForm_Unload ? "!" : "");
       }},
      {"ProcessJobs",
       [](Stage& s) {
         const bool ended = s.engine().ProcessJobs();
         return yes(ended) + " " + counts(s.engine().lastRun());
       }},
      {"VerifyProcesses",
       [](Stage& s) {
         bool noProof = true;
         bool noProcess = true;
         s.engine().VerifyProcesses(noProof, noProcess);
         return yes(noProof) + yes(noProcess);
       }},
      {"CreateProtocol",
       [](Stage& s) {
         const bool created = s.engine().CreateProtocol();
         return yes(s.engine().CreateProtocol() && created);
       }},
      silent("AddProtocolColumn",
             [](E& engine) { engine.AddProtocolColumn("Kunden", "1", "Fehler", "24.11.2026", ""); }),
      silent("DelItem", [](E& engine) { engine.DelItem("C1", true); }),
      silent("DelArchives", [](E& engine) { engine.DelArchives(); }),
      {"GUID", [](Stage& s) { return std::to_string(s.engine().GUID().size()); }},
      {"Export", [](Stage& s) { return yes(s.engine().Export((s.erp.folder.path() / "a.edi").string())); }},
      {"Import",
       [](Stage& s) {
         const std::string file = (s.erp.folder.path() / "b.edi").string();
         exportJobFile(s.erp.environment, file, JobFileVersion::Two);
         return yes(s.engine().Import(file));
       }},
      {"KundeAngelegt", [](Stage& s) { return yes(s.engine().KundeAngelegt("20001")); }},
      {"GetAdresse", [](Stage& s) { return yes(!s.engine().GetAdresse("20001").empty()); }},
      {"GetAdressDaten",
       [](Stage& s) {
         return yes(s.engine().GetAdressDaten("20001", "", text, text, text, text, text, text, text));
       }},
      {"AddAdressDaten",
       [](Stage& s) { return yes(s.engine().AddAdressDaten("20001", "9", "a", "", "", "", "", "", "")); }},
      {"GetBankverbindung", [](Stage& s) { return s.engine().GetBankverbindung("90000001"); }},
      {"GetDiversKunde", [](Stage& s) { return yes(s.engine().GetDiversKunde("20001")); }},
      {"VertragsgegenstandAngelegt",
       [](Stage& s) { return yes(s.engine().VertragsgegenstandAngelegt("G1")); }},
      {"GetVertragsgegenstand", [](Stage& s) { return s.engine().GetVertragsgegenstand("G1"); }},
      {"GetTextbaustein",
       [](Stage& s) {
         return yes(s.engine().GetTextbaustein("K", "1", "", "", text, text, text, text, size, text));
       }},
      {"GetArtikelbezeichnung", [](Stage& s) { return s.engine().GetArtikelbezeichnung("A100"); }},
      {"ArtikelAngelegt", [](Stage& s) { return yes(s.engine().ArtikelAngelegt("A100")); }},
      {"FillComboVersandart", filled<&E::FillComboVersandart>},
      {"FillComboZahlungsart", filled<&E::FillComboZahlungsart>},
      {"FillComboKundengruppe", filled<&E::FillComboKundengruppe>},
      {"FillComboPreisliste", filled<&E::FillComboPreisliste>},
      {"FillComboWährung", filled<&E::FillComboWährung>},
      {"FillComboVertragsart", filled<&E::FillComboVertragsart>},
      {"FillComboVertreter", filled<&E::FillComboVertreter>},
      {"FillComboZahlungsbed", filled<&E::FillComboZahlungsbed>},
      {"GetVertragsZustand",
       [](Stage& s) {
         std::string job = "?";
         const auto state = s.engine().GetVertragsZustand("20001", "V1", "G1", "W", &job);
         return std::to_string(state) + job;
       }},
      {"GetDiffVertrags", [](Stage& s) { return yes(s.engine().GetDiffVertrags({})); }},
      {"GetDelVerträge", [](Stage& s) { return std::to_string(s.engine().GetDelVerträge("20001")); }},
      {"GetSteuerschlüssel",
       [](Stage& s) { return std::to_string(s.engine().GetSteuerschlüssel("IN", "V", "20261124")); }},
      {"GetSteuerSatz", [](Stage& s) { return std::to_string(s.engine().GetSteuerSatz("3")); }},
      {"GetGRabatt",
       [](Stage& s) {
         const Value none;
         return std::to_string(s.engine().GetGRabatt(Value("A"), Value("P"), Value(10.0), none, none, none,
                                                     none, Value(1), Value(50.0)));
       }},
      {"NowEx", [](Stage& s) { return std::to_string(unsigned(s.engine().NowEx().day())); }},
      {"GetLagerbestand",
       [](Stage& s) { return std::to_string(s.engine().GetLagerbestand("A100", "ST", 1, text, true)); }},
      {"MengeneinheitAlternativ", [](Stage& s) { return s.engine().MengeneinheitAlternativ("Stück"); }},
      {"CheckKostzuord", [](Stage& s) { return std::to_string(s.engine().CheckKostzuord("AB", 7, true)); }},
      {"Encrypt", [](Stage& s) { return s.engine().Encrypt("a"); }},
      {"ImpGetSetting", [](Stage& s) { return s.engine().ImpGetSetting("", "Allgemein", "Landeswährung"); }},
      {"ImpSaveSetting", [](Stage& s) { return s.engine().ImpSaveSetting("", "MAIN", "Top", "1", true); }},
      {"checkJob", [](Stage& s) { return joined(s.engine().checkJob("O1")); }},
  };
  return all;
}

/// The result of a call and the boxes after it, or what it raised.
std::string outcome(TestErp& erp, const std::function<std::string()>& call) {
  erp.desktop.shown.clear();
  std::string result;
  try {
    result = call();
  } catch (const std::exception& error) {
    return std::string("raises ") + error.what();
  }
  for (const Message& box : erp.desktop.shown) result += "|" + box.text;
  return result;
}

std::string withoutBoxes(const std::string& outcome) { return outcome.substr(0, outcome.find('|')); }

/// '%' stands for the cause as shown in a box, '#' for the cause as raised.
std::string filledIn(std::string_view pattern, std::string_view cause, std::string_view raised) {
  std::string result;
  for (const char c : pattern) {
    if (c == '%')
      result += cause;
    else if (c == '#')
      result += raised;
    else
      result += c;
  }
  return result;
}

struct Situation {
  std::string_view name;
  std::string_view cause;
  std::string_view raised;
};
constexpr std::array situations{
    Situation{"no connection", "Es ist keine Datenbank verbunden.", "Es ist keine Datenbank verbunden."},
    Situation{"a closed one", "Die Datenbank kann nicht gelesen oder geschrieben werden.", "closed"},
    Situation{"one that refuses", "Die Datenbank hat das abgelehnt.", "refused"}};

/// What a member gives in each situation.
struct Expectation {
  std::string_view member;
  std::array<std::string_view, situations.size()> outcomes;
};

constexpr Expectation same(std::string_view member, std::string_view outcome) {
  return {member, {outcome, outcome, outcome}};
}

/// They raise in every situation.
constexpr std::string_view raising =
    "KundeAngelegt GetAdresse GetAdressDaten AddAdressDaten GetBankverbindung GetDiversKunde "
    "VertragsgegenstandAngelegt GetVertragsgegenstand GetTextbaustein GetArtikelbezeichnung ArtikelAngelegt "
    "FillComboVersandart FillComboZahlungsart FillComboKundengruppe FillComboPreisliste FillComboWährung "
    "FillComboVertragsart FillComboVertreter FillComboZahlungsbed GetSteuerschlüssel GetSteuerSatz "
    "GetLagerbestand MengeneinheitAlternativ CheckKostzuord";

constexpr std::array expectations{
    Expectation{"ConnectDB",
                {"no|Fehler beim Öffnen der Importvorgänge: Bitte geben Sie eine Connection an.",
                 "no|Fehler beim Öffnen der Importvorgänge: %",
                 "no|Fehler beim Öffnen der Importvorgänge: %"}},
    same("WWSSession", "yesyesyes"),
    same("Session", "yes"),
    same("ActiveConnection", "yes"),
    Expectation{"JobViewShow",
                {"nono0|Bitte geben Sie eine Connection an.", "nono0|Bitte geben Sie eine Connection an.",
                 "nono1|Fehler beim Öffnen der Importvorgänge: %"}},
    same("Unload", "1!"),
    Expectation{
        "ProcessJobs",
        {"no 0/0/0|Fehler bei der Verarbeitung: %", "no 0/0/0|Fehler bei der Verarbeitung: %",
         "no 0/0/0|Verarbeitungsprotokoll konnte nicht erzeugt werden. %|Fehler bei der Verarbeitung: %"}},
    Expectation{"VerifyProcesses",
                {"nono|Fehler beim Prüfen der Importvorgänge: Bitte geben Sie eine Connection an.",
                 "nono|Fehler beim Prüfen der Importvorgänge: %",
                 "nono|Fehler beim Prüfen der Importvorgänge: %"}},
    same("CreateProtocol", "no|Verarbeitungsprotokoll konnte nicht erzeugt werden. %"
                           "|Verarbeitungsprotokoll konnte nicht erzeugt werden. %"),
    same("AddProtocolColumn", "|Fehler beim Erzeugen der Protokollzeile. %"),
    Expectation{"DelItem", {"|Fehler beim Löschen: %", "|Fehler beim Löschen: %", ""}},
    Expectation{"DelArchives", {"|Fehler beim Löschen: %", "|Fehler beim Löschen: %", ""}},
    same("GUID", "32"),
    same("Export", "no|Beim Exportieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
                   "exportiert werden."),
    same("Import", "no|Beim Importieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
                   "importiert werden."),
    same("GetVertragsZustand", "0|Fehler beim Vergleichen der Verträge: %"),
    same("GetDiffVertrags", "no|Fehler beim Vergleichen der Verträge: %"),
    same("GetDelVerträge", "0|Fehler beim Kennzeichnen der Verträge: %"),
    // The amount comes from the price component, which needs no statement for it.
    Expectation{"GetGRabatt", {"raises #", "5.000000", "5.000000"}},
    same("NowEx", "24"),
    same("Encrypt", "A"),
    same("ImpGetSetting", "EUR"),
    same("ImpSaveSetting", ""),
    Expectation{"checkJob", {"raises #", "raises #", "Der Vorgang konnte nicht geprüft werden: %;"}},
};

/// What a member gives while a component raises. The components' members that are not named here cost
/// nothing but an entry in the diagnostics.
struct Consequence {
  std::string_view member;
  std::string_view faults; ///< apart by blanks
  std::string_view outcome;
};

constexpr std::string_view threeLines =
    "yes 3/0/0|Fehler beim Erzeugen der Protokollzeile. %|Fehler beim Erzeugen der Protokollzeile. "
    "%|Fehler beim Erzeugen der Protokollzeile. %";
constexpr std::string_view noProtocol =
    "yes 3/0/0|Verarbeitungsprotokoll konnte nicht erzeugt werden. %"
    "|Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet."
    "|Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet."
    "|Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet.";
// An order needs the day as well.
constexpr std::string_view noDay =
    "yes 2/0/1|Verarbeitungsprotokoll konnte nicht erzeugt werden. %"
    "|Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet."
    "|Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet."
    "|Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet.";

constexpr std::array consequences{
    Consequence{"constructor", "Session.PersonalNr Session.connection",
                "no|Fehler beim Verbinden mit der Warenwirtschaft: %"},
    Consequence{"WWSSession",
                "ErpComponents.createSession Session.Connect Session.NotConnected Session.PersonalNr "
                "Session.connection",
                "nonono|Fehler beim Verbinden mit der Warenwirtschaft: %"},
    Consequence{"Session", "Session.PersonalNr Session.connection",
                "no|Fehler beim Verbinden mit der Warenwirtschaft: %"},
    Consequence{"ActiveConnection", "Session.connection", "no|Die Verbindung kann nicht verwendet werden: %"},
    Consequence{"JobViewShow", "JobView.open", "nono1|Fehler beim Öffnen der Importvorgänge: %"},
    Consequence{"ProcessJobs",
                "ErpComponents.createPreisfindung Preisfindung.Init Preisfindung.GetVKPreis "
                "Session.GetBelegnummer Session.GetBuchungskreis Session.connection Session.GetSetting",
                "yes 2/0/1"},
    Consequence{"ProcessJobs", "Session.GetSessionDate", noDay},
    Consequence{"ProcessJobs", "Protokoll.CreateProtokoll", noProtocol},
    Consequence{"ProcessJobs", "Protokoll.AddNewRecord Protokoll.SetField Protokoll.UpdateRecord",
                threeLines},
    Consequence{"CreateProtocol", "Protokoll.CreateProtokoll Session.GetSessionDate",
                "no|Verarbeitungsprotokoll konnte nicht erzeugt werden. %|Verarbeitungsprotokoll konnte "
                "nicht erzeugt werden. %"},
    Consequence{"CreateProtocol", "Protokoll.OpenProtokoll",
                "no|Verarbeitungsprotokoll konnte nicht erzeugt werden. %"},
    Consequence{"AddProtocolColumn", "Protokoll.AddNewRecord Protokoll.SetField Protokoll.UpdateRecord",
                "|Fehler beim Erzeugen der Protokollzeile. %"},
    Consequence{"GUID", "GuidSource.create", "0"},
    Consequence{"GetSteuerschlüssel", "Session.connection Session.GetSetting", "raises %"},
    Consequence{"GetSteuerSatz", "Session.connection", "raises %"},
    Consequence{"GetGRabatt",
                "ErpComponents.createPreisfindung Preisfindung.setConnection Preisfindung.Init "
                "Preisfindung.GetGesamtRabattWert",
                "raises %"},
    Consequence{"NowEx", "Session.GetSessionDate", "raises %"},
    Consequence{"GetLagerbestand", "Session.Umrechnungen Umrechnungen.GetUmrechnung", "raises %"},
    Consequence{"ImpGetSetting", "Session.GetSetting", ""},
    Consequence{"checkJob",
                "ErpComponents.createPreisfindung Preisfindung.setConnection Preisfindung.Init "
                "Preisfindung.GetVKPreis",
                "Der Vorgang konnte nicht geprüft werden: %;"},
};

class Members : public OrderTest {
protected:
  Members() {
    execute("Insert Into Artikellager (Artikelnummer, Lagernummer, MitBestand, Lagerbestand) "
            "Values ('A100', '1', 1, 10)"_sql);
  }

  /// The same tables before each call.
  void restage() {
    WorkUnit unit(connection());
    for (const char* table : {"ImportKopf", "ImportPos", "LockControl", "Protokolle", "Auftragskopf",
                              "Verträge", "Adressenstamm"})
      execute("Delete From "_sql, name(table));
    execute("Delete From Einstellungen Where [Key] In ('ProtoID', 'ProtoDate')"_sql);
    execute("Delete From Kundenstamm Where Kundennummer = '30001'"_sql);
    erp.jobView.isOpen = false;
    erp.environment.session->Connect("", "");
    stageCustomer("C1", "30001");
    stageContract("V1", {{"Zustand", "I"}});
    stageOrderOf("O1", "A100", 2);
    unit.commit();
    erp.diagnostics.entries.clear();
  }
  const Member& member(std::string_view name) { return *std::ranges::find(members(), name, &Member::name); }
  std::string call(Stage& stage, const Member& member) {
    return outcome(erp, [&] {
      const Subscription watching = stage.engine().subscribe(stage.events);
      return member.call(stage);
    });
  }
  /// A member on an engine that has had a good connection and an open protocol until now.
  std::string callIn(const Situation& situation, const Member& member, std::string_view fault) {
    restage();
    Stage stage(erp);
    const auto refusing = std::make_shared<RecordingConnection>(erp.database);
    stage.world.session->replaced = true;
    stage.world.session->replacement = refusing;
    stage.engine().CreateProtocol();
    refusing->refusing = true;
    std::shared_ptr<Connection> connection = refusing;
    if (&situation == &situations[0]) connection = nullptr;
    if (&situation == &situations[1]) connection = std::make_shared<ClosedConnection>();
    stage.world.session->replacement = connection;
    stage.world.environment.connection = connection;
    stage.world.fault.failing = fault;
    erp.diagnostics.entries.clear();
    return call(stage, member);
  }
};

TEST_F(Members, HaveAStatedOutcomeOnAConnectionThatDoesNotWork) {
  std::vector<Expectation> all(expectations.begin(), expectations.end());
  const std::vector<std::string> raisers = split(raising);
  for (const std::string& member : raisers) all.push_back(same(member, "raises #"));
  for (const Expectation& expected : all)
    for (std::size_t i = 0; i < situations.size(); ++i) {
      SCOPED_TRACE(std::string(expected.member) + " on " + std::string(situations[i].name));
      const std::string stated = filledIn(expected.outcomes[i], situations[i].cause, situations[i].raised);
      EXPECT_EQ(callIn(situations[i], member(expected.member), ""), stated);
      // A box that cannot be shown changes nothing.
      if (stated.find('|') == std::string::npos) continue;
      EXPECT_EQ(callIn(situations[i], member(expected.member), "Desktop.show"), withoutBoxes(stated));
      EXPECT_THAT(erp.diagnostics.text(), ::testing::HasSubstr("Desktop.show fails"));
    }
}

TEST_F(Members, HaveAStatedOutcomeWhereAComponentRaises) {
  std::size_t met = 0;
  for (const Member& member : members()) {
    const bool construction = member.name == "constructor";
    const auto prepare = [&](Stage& stage) {
      restage();
      if (!construction) stage.engine();
      if (member.name == "AddProtocolColumn") stage.engine().CreateProtocol();
      stage.world.fault.reached.clear();
      erp.diagnostics.entries.clear();
    };
    std::string healthy;
    std::set<std::string> reached;
    {
      Stage stage(erp);
      prepare(stage);
      healthy = call(stage, member);
      if (construction) stage.made.reset();
      reached = stage.world.fault.reached;
    }
    EXPECT_EQ(healthy.find("raises"), std::string::npos) << member.name << ": " << healthy;
    for (const std::string& fault : reached) {
      SCOPED_TRACE(std::string(member.name) + " where " + fault + " raises");
      const auto stated = std::ranges::find_if(consequences, [&](const Consequence& each) {
        return each.member == member.name && std::ranges::count(split(each.faults), fault) == 1;
      });
      Stage stage(erp);
      prepare(stage);
      stage.world.fault.failing = fault;
      const std::string result = call(stage, member);
      if (construction) stage.made.reset();
      if (stated == consequences.end()) {
        EXPECT_EQ(result, healthy);
      } else {
        ++met;
        EXPECT_EQ(result, filledIn(stated->outcome, fault + " fails", ""));
      }
      if (result.starts_with("raises")) continue;
      EXPECT_THAT(erp.diagnostics.text(), ::testing::HasSubstr(fault + " fails"));
    }
  }
  std::size_t stated = 0;
  for (const Consequence& each : consequences) stated += split(each.faults).size();
  EXPECT_EQ(met, stated) << "a consequence is stated for a component that is not asked";
}

/// Opens what the test has prepared.
class PreparedDatabase final : public Database {
public:
  std::unique_ptr<Connection> open(std::string_view /*target*/) override {
    if (!next) throw StoreError("no file", 14);
    return std::move(next);
  }
  std::unique_ptr<Connection> create(std::string_view target) override { return open(target); }

  std::unique_ptr<Connection> next;
};

TEST_F(Members, OfTheFirstVersionAndOfTheEntryObjectsHaveAStatedOutcomeToo) {
  using Old = ImportJobObject;
  struct Row {
    std::string_view member;
    std::function<std::string(Old&)> call;
    std::string_view stated;
  };
  const ImportJob job;
  const ImportJobSubItem position;
  const std::string file = (erp.folder.path() / "v1.edi").string();
  std::string written;
  const std::array rows{
      Row{"UpdateItem", [&](Old& old) { return yes(old.UpdateItem(job, "C1")); }, "no|Fehler beim Update: %"},
      Row{"UpdateSubItem", [&](Old& old) { return yes(old.UpdateSubItem(position, "P1")); },
          "no|Fehler beim Update: %"},
      Row{"DelItem", [](Old& old) { return old.DelItem("C1"), std::string(); }, ""},
      Row{"DelArchives", [](Old& old) { return old.DelArchives(), std::string(); }, ""},
      Row{"LoadFromDatabase",
          [](Old& old) { return yes(old.LoadFromDatabase()) + std::to_string(old.Count()); }, "no0"},
      Row{"StoreItemToDB", [&](Old& old) { return yes(old.StoreItemToDB(job)); }, "no"},
      Row{"StoreSubItemToDB", [](Old& old) { return yes(old.StoreSubItemToDB()); }, "no"},
      Row{"SaveSubItem", [&](Old& old) { return yes(old.SaveSubItem(position)); }, "no"},
      Row{"Export", [&](Old& old) { return yes(old.Export(written)); },
          "no|Beim Exportieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
          "exportiert "
          "werden."},
      Row{"Import", [&](Old& old) { return yes(old.Import(file)); },
          "no|Beim Importieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
          "importiert "
          "werden."}};
  restage();
  {
    PreparedDatabase database;
    database.next = erp.secondConnection();
    Old old(erp.environment, database);
    ASSERT_TRUE(old.ConnectDB());
    ASSERT_TRUE(old.Export(file));
  }
  for (const Situation& situation : situations) {
    PreparedDatabase database;
    if (&situation == &situations[1]) database.next = std::make_unique<ClosedConnection>();
    if (&situation == &situations[2]) {
      auto refusing = std::make_unique<RecordingConnection>(erp.database);
      refusing->refusing = true;
      database.next = std::move(refusing);
    }
    Old old(erp.environment, database);
    EXPECT_FALSE(old.ConnectDB());
    written = file + " on " + std::string(situation.name);
    for (const Row& row : rows) {
      SCOPED_TRACE(std::string(row.member) + " on " + std::string(situation.name));
      erp.diagnostics.entries.clear();
      EXPECT_EQ(outcome(erp, [&] { return row.call(old); }), filledIn(row.stated, situation.cause, ""));
      EXPECT_FALSE(erp.diagnostics.entries.empty());
    }
    FailingWorld world(erp.environment);
    world.environment.connection = nullptr;
    if (&situation == &situations[1]) world.environment.connection = std::make_shared<ClosedConnection>();
    world.fault.failing = &situation == &situations[2] ? "Session.GetSetting" : "Session.GetSessionDate";
    erp.diagnostics.entries.clear();
    EXPECT_EQ(outcome(erp,
                      [&] {
                        Kunde(world.environment).AddItem();
                        Vertrag(world.environment).AddItem();
                        Auftrag(world.environment).AddItem();
                        AuftragsPos(world.environment).AddItem();
                        return std::string();
                      }),
              "");
    EXPECT_GE(erp.diagnostics.entries.size(), 4U);
  }
}

} // namespace
} // namespace qx
