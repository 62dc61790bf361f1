// The processing run: order, selection, reset, progress, failures of the store and work units.
#include "engine_fixture.h"

#include "engine/run_wait.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace qx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class Run : public EngineTest {};

TEST_F(Run, CustomersAreTakenInTextOrderOfTheirNumberWithRoundedProgress) {
  const std::array<const char*, 8> numbers{"2", "10", "1", "3", "4", "5", "6", "7"};
  for (const char* number : numbers) stageCustomer(std::string("J") + number, number);
  run();
  std::vector<std::string> order;
  for (const JobOutcome& outcome : outcomes) order.push_back(outcome.number);
  EXPECT_THAT(order, ElementsAre("1", "10", "2", "3", "4", "5", "6", "7"));
  // Halves go to the even neighbour: 12.5, 37.5, 62.5, 87.5.
  EXPECT_THAT(events.progress, ElementsAre(12, 25, 38, 50, 62, 75, 88, 100));
}

TEST_F(Run, TheSelectionIsComparedForEquality) {
  const std::string customers = "Kunden werden verarbeitet...";
  const std::string contracts = "Verträge werden überprüft und verarbeitet...";
  const std::string orders = "Aufträge werden verarbeitet...";
  const auto infosOf = [&](int selection) {
    events.infos.clear();
    EXPECT_TRUE(run(static_cast<qxProcessState>(selection)));
    EXPECT_THAT(events.progress, IsEmpty()) << "an empty section raises no progress";
    return events.infos;
  };
  EXPECT_THAT(infosOf(0), ElementsAre(customers, contracts, orders));
  EXPECT_THAT(infosOf(1), ElementsAre(customers));
  EXPECT_THAT(infosOf(2), ElementsAre(contracts));
  for (const int selection : {4, 8}) EXPECT_THAT(infosOf(selection), ElementsAre(orders));
  for (const int selection : {3, 5, 6, 12}) EXPECT_THAT(infosOf(selection), IsEmpty()) << selection;
  EXPECT_EQ(count("Select Count(*) From Protokolle"_sql), 1) << "all runs of a day share one protocol";
}

TEST_F(Run, ReleasedJobIsProcessedInTheSameRunAndOthersStayParked) {
  stageCustomer("R", "70001", {{"JobType", 12}, {"Fehlertext", "Grund"}});
  stageCustomer("P", "70002", {{"JobType", 11}});
  release("R");
  run();
  EXPECT_EQ(outcomeOf("R"), "13|");
  EXPECT_EQ(jobType("P"), 11);
  EXPECT_EQ(field("R", "ProcessWarning"), Value(std::int64_t{1})) << "a run never takes the release back";
}

TEST_F(Run, TheResetEmptiesReleasedRowsOfEveryCodeButMapsOnlyParkedOnes) {
  constexpr std::array parked{11, 12, 21, 22, 31, 32, 41, 42};
  constexpr std::array others{10, 13, 23, 44};
  const auto key = [](int code) { return "K" + std::to_string(code); };
  const auto stageReleased = [&](int code) {
    execute("Insert Into ImportKopf (JobID, JobType, ImportType, Fehlertext, ProcessWarning) Values ('"_sql,
            value(key(code)), "', "_sql, number(code), ", 99, 'alt', 1)"_sql);
  };
  std::ranges::for_each(parked, stageReleased);
  std::ranges::for_each(others, stageReleased);
  run(static_cast<qxProcessState>(3));
  const auto reset = [&](int code) { return fields(key(code), {"JobType", "ImportType", "Fehlertext"}); };
  for (const int code : parked) EXPECT_EQ(reset(code), std::to_string(code / 10 * 10) + "|10|");
  for (const int code : others) EXPECT_EQ(reset(code), std::to_string(code) + "|10|");
}

TEST_F(Run, WhileAnOrderIsBeingReadInNothingHappens) {
  erp.setOption("NewMail", "1");
  stageCustomer("J1", "70001");
  EXPECT_FALSE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Refused);
  EXPECT_EQ(erp.desktop.shown.front().text, "Es wird gerade eine Bestellung eingelesen.");
  EXPECT_EQ(jobType("J1"), 10);
  EXPECT_EQ(count("Select Count(*) From Protokolle"_sql), 0);
}

TEST_F(Run, OneRefusedSaveOfManyFailsItsJobAlone) {
  stageMany(250);
  refuse("INSERT ON Kundenstamm"_sql, "new.Kundennummer = '70123'"_sql, "'Satz gesperrt'"_sql);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 249);
  EXPECT_EQ(outcomeOf("J123"), "12|Satz gesperrt");
  EXPECT_EQ(protocolLines(), 250);
  EXPECT_EQ(engine.lastRun().error, 1U);
}

TEST_F(Run, AJobThatTakesTheWholeUnitWithItFailsAloneAndItsNeighboursAreWrittenOnce) {
  stageMany(130);
  refuse("INSERT ON Kundenstamm"_sql, "new.Kundennummer = '70042'"_sql, "'alles verloren'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 129);
  EXPECT_EQ(outcomeOf("J42"), "12|alles verloren");
  EXPECT_EQ(protocolLines(), 130);
  EXPECT_EQ(outcomes.size(), 130U);
  EXPECT_EQ(engine.strGlobalProcErr, "alles verloren");
  EXPECT_TRUE(std::is_sorted(events.progress.begin(), events.progress.end()));
}

TEST_F(Run, AProtocolLineThatCannotBeWrittenTakesNothingBack) {
  stageMany(3);
  refuse("INSERT ON Protokollpositionen"_sql, "'Protokoll voll'"_sql);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_EQ(engine.lastRun().protocolErrors, 3U);
  EXPECT_EQ(erp.desktop.shown.front().text,
            "Fehler beim Erzeugen der Protokollzeile. Die Datenbank hat das abgelehnt.");
}

TEST_F(Run, AnObserverThatRaisesStopsNothing) {
  stageMany(2);
  events.onInfo = [](std::string_view info) {
    if (info.find("70001") != std::string_view::npos) throw 42;
    throw std::runtime_error("Beobachter");
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 2);
}

TEST_F(Run, AStopEndsTheRunAfterTheCurrentJobWithoutPurge) {
  erp.setOption("KundeDelete", "1");
  stageMany(10);
  engine.setOutcomeSink({});
  events.onInfo = [this](std::string_view info) {
    if (info.find("70004") != std::string_view::npos) engine.requestStop();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_EQ(done(), 4);
  EXPECT_EQ(engine.lastRun().stillWaiting, 6U);
  EXPECT_THAT(events.infos, Not(Contains("Aufträge werden verarbeitet..."))) << "nothing more is taken";
  EXPECT_TRUE(run()) << "the request is gone with the run that it stopped";
  EXPECT_EQ(count("Select Count(*) From ImportKopf"_sql), 0) << "the purge ran this time";
}

TEST_F(Run, AStopThatNoRunIsUnderWayForIsForgotten) {
  stageMany(2);
  engine.requestStop();
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
  EXPECT_EQ(done(), 2);
}

TEST_F(Run, InTheMiddleOfARunNeitherAnotherNorAnotherConnectionOrSessionBegins) {
  stageMany(2);
  stageCustomer("J3", "");
  engine.JobViewShow();
  const auto session = engine.Session();
  const auto connection = engine.ActiveConnection();
  std::string inside;
  events.onInfo = [&](std::string_view info) {
    if (info.find("70001") == std::string_view::npos) return;
    inside += engine.ProcessJobs() ? "run " : "";
    inside += engine.WWSSession() ? "connect " : "";
    engine.Session(nullptr);
    engine.ActiveConnection(erp.secondConnection());
    engine.Unload();
    inside += engine.importLock().held() ? "held" : "";
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(inside, "held") << "the lock stays as long as the run";
  EXPECT_EQ(engine.Session(), session);
  EXPECT_EQ(engine.ActiveConnection(), connection);
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(engine.lastRun().error, 1U);
  EXPECT_THAT(engine.strGlobalProcErr, HasSubstr("Kundennummer")) << "the errors are those of the outer run";
  EXPECT_THAT(erp.desktop.shown, IsEmpty()) << "a unit of work may be open";
  EXPECT_FALSE(engine.importLock().held());
  EXPECT_EQ(count("Select Count(*) From LockControl"_sql), 0);
  std::vector<std::string> refused;
  for (const auto& entry : erp.diagnostics.entries)
    if (entry.what == "refused while a processing run is under way") refused.push_back(entry.where);
  EXPECT_THAT(refused, ElementsAre("ProcessJobs", "WWSSession", "Session", "ActiveConnection"));
}

TEST_F(Run, TheErrorsOfTheRunBeforeDoNotComeBackWhenTheNextOneCannotBegin) {
  stageCustomer("J1", "");
  run();
  EXPECT_FALSE(engine.strGlobalProcErr.empty());
  engine.ActiveConnection(nullptr);
  EXPECT_FALSE(run());
  EXPECT_EQ(engine.strGlobalProcErr, "");
  EXPECT_EQ(engine.strGlobalKundeProcErr, "");
}

TEST_F(Run, JobsThatSomeoneElseTookMeanwhileArePassedOver) {
  stageMany(150);
  const auto other = erp.secondConnection();
  bool taken = false;
  erp.desktop.onYield = [&] {
    if (done() == 0 || taken) return;
    taken = true;
    other->execute(sql("Delete From ImportKopf Where JobID = 'J120'"_sql));
    other->execute(sql("Update ImportKopf Set JobType = 11 Where JobID = 'J130'"_sql));
  };
  EXPECT_TRUE(run());
  EXPECT_TRUE(taken);
  EXPECT_EQ(done(), 148);
  EXPECT_EQ(jobType("J130"), 11);
  EXPECT_EQ(protocolLines(), 148);
  EXPECT_EQ(events.progress.back(), 100);
}

TEST_F(Run, TheMessageLoopRunsWhileAnotherProgramKeepsTheDatabase) {
  stageMany(150);
  const auto other = erp.secondConnection();
  int waited = 0;
  erp.desktop.onYield = [&] {
    if (waited == 0) {
      other->beginWork(nullptr);
      other->execute(sql("Update ImportKopf Set Bemerkung = 'gesperrt' Where JobID = 'J120'"_sql));
    } else if (waited == 3) {
      other->rollbackWork();
    }
    ++waited;
  };
  EXPECT_TRUE(run());
  EXPECT_GT(waited, 3);
  EXPECT_EQ(done(), 150);
}

TEST_F(Run, AProgramThatStagesBetweenTheGroupsDisturbsNothing) {
  stageMany(350);
  const auto other = erp.secondConnection();
  int staged = 0;
  erp.desktop.onYield = [&] {
    ++staged;
    other->execute(sql("Insert Into ImportKopf (JobID, JobType, Kundennummer) Values ('"_sql,
                       value("N" + std::to_string(staged)), "', 10, '"_sql,
                       value("9" + std::to_string(staged)), "')"_sql));
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 350) << "what arrives during the run is for the next one";
  EXPECT_GE(staged, 4);
}

TEST_F(Run, InTheInstallationsOwnModeAProtocolOfChangesOnlyIsRemoved) {
  execute(
      "Insert Into Einstellungen (Section, \"Key\", Value) Values ('Allgemein', 'Individual', 'VLK')"_sql);
  stageCustomer("J1", "70001");
  run();
  EXPECT_EQ(count("Select Count(*) From Protokolle"_sql), 1) << "a new customer keeps it";
  execute("Delete From Protokollpositionen"_sql);
  stageCustomer("J2", "70001");
  run();
  EXPECT_EQ(count("Select Count(*) From Protokolle"_sql), 0);
  EXPECT_EQ(engine.lastRun().protocolId, "");
  engine.AddProtocolColumn("Kunden", "70001", "Erledigt", "24.11.2026", "");
  EXPECT_EQ(erp.desktop.texts(),
            "Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet.\n");
  EXPECT_EQ(protocolLines(), 0) << "no line of a protocol that is gone";
  stageCustomer("J3", "70003");
  run();
  EXPECT_EQ(protocolLines(), 1) << "the next run recovers from the protocol that is gone";
}

TEST_F(Run, TheDayDecidesWhichProtocolIsUsed) {
  run();
  const std::string first = engine.lastRun().protocolId;
  run();
  EXPECT_EQ(engine.lastRun().protocolId, first);
  erp.setSessionDate(makeDate(2026, 11, 25));
  run();
  EXPECT_NE(engine.lastRun().protocolId, first);
  EXPECT_EQ(engine.ImpGetSetting("QXImportJob", "ImportJob2", "ProtoDate"), "25.11.2026");
}

TEST_F(Run, OnAHostsConnectionTheRunWorksWithoutUnitsOfItsOwn) {
  stageMany(3);
  becomeHost();
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_EQ(outcomes.size(), 3U);
}

TEST_F(Run, VerifyAnswersFromTheStagingTableAndChangesNothing) {
  bool noProof = true;
  bool noProcess = false;
  engine.VerifyProcesses(noProof, noProcess);
  EXPECT_FALSE(noProof);
  EXPECT_TRUE(noProcess) << "nothing is staged";
  stageCustomer("J1", "70001", {{"JobType", 12}});
  engine.VerifyProcesses(noProof, noProcess);
  EXPECT_TRUE(noProcess) << "a parked job that nobody released";
  release("J1");
  engine.VerifyProcesses(noProof, noProcess);
  EXPECT_FALSE(noProcess);
  stageCustomer("J2", "70002");
  erp.setOption("AutomatischVerarbeiten", "1");
  engine.VerifyProcesses(noProof, noProcess);
  EXPECT_TRUE(noProof);
  EXPECT_EQ(jobType("J2"), 10);
}

// The object itself.

using Engine = EngineTest;

TEST_F(Engine, TheViewOpensOnceTheLockIsTakenAndUnloadGivesItBack) {
  engine.JobViewShow();
  EXPECT_EQ(erp.jobView.opened, 1);
  EXPECT_EQ(engine.ViewFormLoad, qxtViewJobForm_Load);
  EXPECT_EQ(count("Select Count(*) From LockControl"_sql), 1);
  engine.JobViewShow();
  EXPECT_EQ(erp.jobView.opened, 2) << "the view that is open comes to the front";
  engine.Unload();
  EXPECT_EQ(events.unloads, 1);
  EXPECT_EQ(count("Select Count(*) From LockControl"_sql), 0);
}

TEST_F(Engine, ARefusedViewUnloadsAndLeavesTheOthersLockAlone) {
  execute("Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values "
          "('ImportJob', '1', 'unbennant', 'fremd', 'Anna')"_sql);
  engine.JobViewShow();
  EXPECT_EQ(erp.jobView.opened, 0);
  EXPECT_EQ(events.unloads, 1);
  EXPECT_EQ(engine.ViewFormLoad, qxtViewJobForm_Unload);
  EXPECT_EQ(erp.desktop.shown.front().text,
            "Der Import wird gerade von Benutzer 'Anna' auf Rechner 'unbennant' bearbeitet.");
  EXPECT_EQ(erp.desktop.shown.front().title, "Datensatz gesperrt");
  EXPECT_EQ(count("Select Count(*) From LockControl"_sql), 1);
}

TEST_F(Engine, WithoutAConnectionTheViewAsksForOne) {
  erp.environment.connection.reset();
  engine.JobViewShow();
  EXPECT_EQ(erp.desktop.shown.front().text, "Bitte geben Sie eine Connection an.");
  EXPECT_FALSE(engine.ConnectDB());
}

TEST_F(Engine, ATextBlockComesBackInItsOwnPlaces) {
  execute("Insert Into Textbausteine (Textart, TextNummer, ZusatztextNummer, SprachKZ, Kurztext, Langtext, "
          "WoDrucken, Schriftart, Schriftgröße, Schriftstil) "
          "Values ('K', '1', 'Z', 'D', 'kurz', 'lang', 'LR', 'Arial', 9, 'Fett')"_sql);
  std::string shortText, longText, place, face, style;
  std::int16_t size = 0;
  ASSERT_TRUE(engine.GetTextbaustein("K", "1", "Z", "D", shortText, longText, place, face, size, style));
  EXPECT_THAT((std::array{shortText, longText, place, face, style}),
              ElementsAre("kurz", "lang", "LR", "Arial", "Fett"));
  EXPECT_EQ(size, 9);
}

TEST_F(Engine, AnAddressIsGivenLineByLine) {
  add("Adressenstamm", {{"Kundennummer", "20001"},
                        {"Adressnummer", "7"},
                        {"Bez1", "eins"},
                        {"Bez2", "zwei"},
                        {"Bez3", "drei"},
                        {"Strasse", "Weg 4"},
                        {"Land", "DE"},
                        {"PLZ", "20457"},
                        {"Ort", "Hamburg"}});
  std::array<std::string, 7> lines;
  auto& [first, second, third, street, country, code, town] = lines;
  EXPECT_TRUE(engine.GetAdressDaten("20001", "7", first, second, third, street, country, code, town));
  EXPECT_THAT(lines, ElementsAre("eins", "zwei", "drei", "Weg 4", "DE", "20457", "Hamburg"));
}

TEST_F(Engine, AViewThatIsUnloadedBeforeTheFirstUnitOfARunKeepsTheLockUntilItsEnd) {
  engine.JobViewShow();
  std::string inside;
  events.onInfo = [&](std::string_view) {
    if (!inside.empty()) return;
    engine.Unload();
    inside = engine.importLock().held() ? "held" : "free";
  };
  run();
  EXPECT_EQ(inside, "held");
  EXPECT_FALSE(engine.importLock().held());
}

TEST_F(Engine, SubscriptionsEndWithTheirHandle) {
  {
    RecordingEvents other;
    const Subscription handle = engine.subscribe(other);
    engine.Unload();
    EXPECT_EQ(other.unloads, 1);
  }
  engine.Unload();
  EXPECT_EQ(events.unloads, 2);
}

TEST_F(Engine, AnObserverWhoseSubscriptionEndsInTheMiddleIsNotCalledAnyMore) {
  RecordingEvents later;
  auto handle = std::make_unique<Subscription>(engine.subscribe(later));
  events.onInfo = [&](std::string_view) { handle.reset(); };
  run();
  EXPECT_THAT(later.infos, IsEmpty());
}

TEST_F(Engine, AConnectionOfItsOwnBesideThatOfTheSessionIsRefused) {
  const auto before = engine.ActiveConnection();
  engine.ActiveConnection(erp.secondConnection());
  EXPECT_EQ(engine.ActiveConnection(), before);
  EXPECT_EQ(erp.desktop.texts(), "Die Verbindung kann nicht verwendet werden: Die Sitzung arbeitet mit einer "
                                 "anderen Verbindung zu derselben Datenbank.\n");
  // A host's connection has no units to outlast, and without the session there is nobody to wait for.
  const std::shared_ptr<Connection> host = erp.hostConnection();
  engine.ActiveConnection(host);
  EXPECT_EQ(engine.ActiveConnection(), host);
  engine.Session(nullptr);
  const std::shared_ptr<Connection> own = erp.secondConnection();
  engine.ActiveConnection(own);
  EXPECT_EQ(engine.ActiveConnection(), own);
}

TEST_F(Engine, TheProtocolEndsWithItsConnection) {
  ASSERT_TRUE(engine.CreateProtocol());
  for (const auto& next : {std::shared_ptr<Connection>(), erp.hostConnection()}) {
    erp.desktop.shown.clear();
    engine.ActiveConnection(next);
    engine.AddProtocolColumn("Kunden", "1", "Fehler", "24.11.2026", "");
    EXPECT_EQ(erp.desktop.texts(),
              "Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet.\n");
  }
  EXPECT_EQ(protocolLines(), 0);
}

TEST_F(Engine, TheLockStaysWithTheConnectionThatItWasTakenOn) {
  engine.JobViewShow();
  engine.ActiveConnection(erp.hostConnection());
  EXPECT_FALSE(engine.importLock().held());
  EXPECT_EQ(count("Select Count(*) From LockControl"_sql), 0);
}

TEST(WaitingRun, TellsAfterASecondAndOnceAMinuteUntilItIsStopped) {
  using std::chrono::milliseconds;
  RecordingDiagnostics diagnostics;
  EventSource source(diagnostics);
  RecordingEvents events;
  const Subscription subscription = source.subscribe(events);
  StopSignal stop;
  RecordingDesktop desktop;
  RunWait wait(source, diagnostics, stop, desktop);
  struct Moment {
    int waited;
    std::size_t told;
  };
  // The last two belong to another wait of the same run.
  for (const Moment& moment : {Moment{0, 0}, Moment{999, 0}, Moment{1000, 1}, Moment{60999, 1},
                               Moment{61000, 2}, Moment{0, 2}, Moment{1000, 3}}) {
    EXPECT_TRUE(wait.goOn(milliseconds(moment.waited)));
    EXPECT_EQ(events.infos.size(), moment.told) << moment.waited;
    EXPECT_EQ(diagnostics.entries.size(), moment.told) << moment.waited;
  }
  EXPECT_EQ(events.infos.back(),
            "Die Datenbank wird von einem anderen Programm benutzt. Es wird gewartet...");
  stop.request();
  EXPECT_FALSE(wait.goOn(milliseconds(1)));
}

} // namespace
} // namespace qx
