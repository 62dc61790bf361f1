// What a run does when the database refuses or takes back single rows, when jobs disappear, when it is busy
// and when memory is short; and that the next run completes what was left.
#include "order_fixture.h"

#include "support/failing_components.h"

#include <gmock/gmock.h>

#include <map>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

class RunFailures : public OrderTest {
protected:
  /// Numbers that have more than one customer, line or index entry.
  std::int64_t doubled() {
    return count(
        "Select (Select Count(*) From (Select 1 From Kundenstamm Group By Kundennummer Having "
        "Count(*) > 1) As a) + (Select Count(*) From (Select 1 From Protokollpositionen Where Text2 = "
        "'Erledigt' Group By Text1 Having Count(*) > 1) As b)"_sql);
  }
  std::map<std::string, std::string> left() { return engine.lastRun().left; }
};

TEST_F(RunFailures, AJobThatCannotBeMarkedIsLeftWaitingAndTheOthersAreWrittenOnce) {
  for (const bool takesTheUnitAlong : {false, true}) {
    execute("Delete From ImportKopf"_sql);
    execute("Delete From Kundenstamm Where Kundennummer >= '7'"_sql);
    execute("Delete From Protokollpositionen"_sql);
    stageMany(120);
    refuse("UPDATE ON ImportKopf"_sql, "new.JobID = 'J110'"_sql, "'Vorgang gesperrt'"_sql, takesTheUnitAlong);
    EXPECT_TRUE(run());
    EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
    EXPECT_THAT(left(), ElementsAre(std::pair("J110", "Vorgang gesperrt")));
    EXPECT_THAT(erp.diagnostics.text(), HasSubstr("the job is left waiting: Vorgang gesperrt | J110"));
    EXPECT_EQ(outcomeOf("J110"), "10|");
    EXPECT_EQ(count("Select Count(*) From Kundenstamm Where Kundennummer = '70110'"_sql), 0);
    EXPECT_EQ(done(), 119);
    EXPECT_EQ(engine.lastRun().processed, 119U);
    EXPECT_EQ(outcomes.size(), 119U);
    EXPECT_EQ(protocolLines(), 119);
    EXPECT_EQ(engine.strGlobalProcErr,
              "Die Datenbank lehnt es ab, den Vorgang 'J110' zu ändern: Vorgang gesperrt");
    EXPECT_THAT(erp.desktop.shown, IsEmpty());
    allow();
    EXPECT_TRUE(run());
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_EQ(done(), 120);
    EXPECT_EQ(protocolLines(), 120);
    EXPECT_EQ(doubled(), 0);
  }
}

TEST_F(RunFailures, EvenATableThatRefusesEveryMarkEndsNoRun) {
  stageMany(3);
  refuse("UPDATE ON ImportKopf"_sql, "'nur lesen'"_sql);
  EXPECT_TRUE(run());
  EXPECT_EQ(left().size(), 3U);
  EXPECT_EQ(count("Select Count(*) From Kundenstamm Where Kundennummer >= '7'"_sql), 0);
  EXPECT_EQ(protocolLines(), 0);
  EXPECT_EQ(events.progress.back(), 100);
}

TEST_F(RunFailures, OnAHostsConnectionAJobThatCannotBeMarkedIsLeftTheSameWay) {
  stageOrderOf("O1");
  stageOrderOf("O2");
  refuse("UPDATE ON ImportKopf"_sql, "new.JobID = 'O1'"_sql, "'zu kurz'"_sql);
  becomeHost();
  EXPECT_TRUE(run());
  EXPECT_THAT(left(), ElementsAre(std::pair("O1", "zu kurz")));
  EXPECT_EQ(jobType("O1"), 30);
  EXPECT_EQ(jobType("O2"), 33);
  EXPECT_EQ(orders(), 1);
  allow();
  EXPECT_TRUE(run());
  EXPECT_EQ(jobType("O1"), 33);
  EXPECT_EQ(orders(), 2);
  EXPECT_EQ(count("Select Count(Distinct Auftragsnummer) From Auftragspos"_sql), 2);
  EXPECT_THAT(protocol(), UnorderedElementsAre("Auftrag|1|Erledigt", "Auftrag|2|Erledigt"));
}

TEST_F(RunFailures, AJobThatDisappearsWhileItIsProcessedIsPassedOver) {
  for (const bool host : {false, true}) {
    execute("Delete From ImportKopf"_sql);
    execute("Delete From Protokollpositionen"_sql);
    if (host) becomeHost();
    stageMany(3);
    const auto other = erp.secondConnection();
    events.onInfo = [&](std::string_view info) {
      if (info.find("70002") == std::string_view::npos) return;
      if (host)
        other->execute(sql("Delete From ImportKopf Where JobID = 'J2'"_sql));
      else
        engine.DelItem("J2");
    };
    EXPECT_TRUE(run());
    EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_EQ(done(), 2);
    EXPECT_EQ(outcomes.size(), 2U);
    EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Erledigt", "Kunden|70003|Erledigt"));
    EXPECT_EQ(engine.strGlobalProcErr, "");
    EXPECT_THAT(erp.diagnostics.text(), HasSubstr("was deleted while it was processed"));
  }
}

TEST_F(RunFailures, ALineOrIndexEntryThatTakesTheJobAlongIsGivenUpAlone) {
  stageMany(5);
  refuse("INSERT ON Protokollpositionen"_sql, "new.Text1 = '70002'"_sql, "'Zeile'"_sql, true);
  refuse("INSERT ON Adressindex"_sql, "new.Kundennummer = '70004'"_sql, "'Index'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 5);
  EXPECT_EQ(engine.lastRun().done, 5U);
  EXPECT_EQ(engine.lastRun().protocolErrors, 2U);
  EXPECT_EQ(erp.desktop.texts(), "Fehler beim Erzeugen der Protokollzeile. Die Datenbank hat die Änderungen "
                                 "zurückgenommen.\n");
  EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Erledigt", "Kunden|70003|Erledigt",
                                      "Kunden|70004|Erledigt", "Kunden|70005|Erledigt"));
  EXPECT_EQ(count("Select Count(Distinct Kundennummer) From Adressindex Where Kundennummer >= '7'"_sql), 4);
  EXPECT_EQ(doubled(), 0);
}

TEST_F(RunFailures, AFailedJobKeepsItsMarkWhenItsLineTakesItAlong) {
  stageMany(3);
  refuse("INSERT ON Kundenstamm"_sql, "new.Kundennummer = '70002'"_sql, "'Satz'"_sql, true);
  refuse("INSERT ON Protokollpositionen"_sql, "new.Text1 = '70002'"_sql, "'Zeile'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(outcomeOf("J2"), "12|Satz");
  EXPECT_EQ(engine.lastRun().protocolErrors, 1U);
  EXPECT_EQ(protocolLines(), 2);
}

TEST_F(RunFailures, AGroupThatIsLostUnnoticedIsTakenAgain) {
  /// Loses the unit once; what its statement raises is trapped, as that of every observer.
  struct Loser final : EngineEvents {
    explicit Loser(Connection& connection) : connection_(connection) {}
    void JobViewUnload() override {}
    void ProcessProgress(std::int16_t percent) override {
      if (percent == 67) connection_.execute(sql("Update Vertreter Set Bez1 = 'weg'"_sql));
    }
    void ProcessInfo(std::string_view) override {}
    Connection& connection_;
  } loser(connection());
  const Subscription handle = engine.subscribe(loser);
  refuse("UPDATE ON Vertreter"_sql, "'verloren'"_sql, true);
  stageMany(3);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_EQ(engine.lastRun().done, 3U);
  EXPECT_EQ(protocolLines(), 3);
  EXPECT_EQ(doubled(), 0);
}

TEST_F(RunFailures, AReleasedJobThatCannotBeResetIsNamedAndTheRunGoesOn) {
  const Properties parked{{"JobType", 12}};
  stageCustomer("R1", "70001", parked);
  stageCustomer("R2", "70002", parked);
  stageCustomer("J3", "70003");
  release("R1");
  release("R2");
  refuse("UPDATE ON ImportKopf"_sql, "old.JobID = 'R1'"_sql, "'Vorgang gesperrt'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_THAT(left(), ElementsAre(std::pair("R1", "Vorgang gesperrt")));
  EXPECT_EQ(jobType("R1"), 12);
  EXPECT_EQ(done(), 2);
  allow();
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_THAT(protocol(),
              ElementsAre("Kunden|70002|Erledigt", "Kunden|70003|Erledigt", "Kunden|70001|Erledigt"));
}

TEST_F(RunFailures, AContractThatCannotBePreparedFailsAndIsNotWrittenEmpty) {
  add("Vertragsarten", {{"Vertragsart", "WA"}, {"Kurztext", "Wartung"}});
  add("Vertragsgegenstände", {{"VertrGegenstandsNr", "G1"}, {"Bez", "Anlage"}});
  add("VertragsGegenständePos", {{"VertrGegenstandsNr", "G1"}, {"Vertragsart", "WA"}});
  const auto stage = [&](const char* key, const char* number) {
    Vertrag job(erp.environment);
    job.JobID = key;
    job.Kundennummer = "20001";
    job.Vertragsnummer = number;
    job.Zustand = "I"; // what is not checked would be written with empty values
    writeStaged(connection(), static_cast<const VertragFields&>(job));
    ImportJobSubItem position;
    position.JobID = key;
    position.ChildID = std::string("P") + key;
    position.JobType = 1001;
    position.Menge = 3;
    position.Artikelnummer = "G1";
    position.Vertragsart = "WA";
    writeStaged(connection(), position);
  };
  for (const bool takesTheUnitAlong : {false, true}) {
    execute("Delete From ImportKopf"_sql);
    execute("Delete From ImportPos"_sql);
    execute("Delete From Verträge"_sql);
    execute("Delete From Protokollpositionen"_sql);
    stage("V1", "1");
    stage("V2", "2");
    refuse("DELETE ON ImportPos"_sql, "old.JobID = 'V1'"_sql, "'Position gesperrt'"_sql, takesTheUnitAlong);
    EXPECT_TRUE(run());
    EXPECT_EQ(outcomeOf("V1"), "22|Position gesperrt");
    EXPECT_EQ(jobType("V2"), 23);
    EXPECT_THAT(protocol(), ElementsAre("Vertrag|1|Fehler", "Vertrag|2|Erledigt"));
    EXPECT_EQ(keys("Select VertrGegenstandsNr From Verträge"_sql), "G1 ");
    EXPECT_EQ(keys("Select JobID From ImportPos"_sql), "V1 ");
    allow();
    execute("Update ImportKopf Set JobType = 20 Where JobID = 'V1'"_sql);
    EXPECT_TRUE(run());
    EXPECT_EQ(jobType("V1"), 23);
    EXPECT_EQ(keys("Select VertrGegenstandsNr From Verträge"_sql), "G1 G1 ");
  }
}

TEST_F(RunFailures, AJobThatThePurgeCannotTakeAwayStaysAlone) {
  erp.setOption("KundeDelete", "1");
  stageMany(5);
  refuse("DELETE ON ImportKopf"_sql, "old.JobID = 'J3'"_sql, "'bleibt'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
  EXPECT_EQ(engine.lastRun().done, 5U);
  EXPECT_EQ(keys("Select JobID From ImportKopf"_sql), "J3 ");
  EXPECT_THAT(erp.diagnostics.text(), HasSubstr("DelItem | bleibt | J3"));
}

TEST_F(RunFailures, AStopEndsThePurgeBeforeItsNextJob) {
  erp.setOption("KundeDelete", "1");
  stageMany(5);
  events.onInfo = [this](std::string_view info) {
    if (info.starts_with("Archivdaten")) engine.requestStop();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_EQ(engine.lastRun().stillWaiting, 0U);
  EXPECT_EQ(done(), 5);
}

TEST_F(RunFailures, AProtocolThatCannotBeRemovedStaysWhole) {
  customerSpecific();
  stageCustomer("J1", "20001");
  refuse("DELETE ON Protokolle"_sql, "'bleibt'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().protocolId, text("Select ID From Protokolle"_sql));
  EXPECT_THAT(protocol(), ElementsAre("Kunden|20001|Erledigt"));
}

TEST_F(RunFailures, AProtocolWhoseIdentityCannotBeKeptCostsTheProtocolAlone) {
  stageMany(2);
  refuse("INSERT ON Einstellungen"_sql, "new.[Key] = 'ProtoID'"_sql, "'gesperrt'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(engine.lastRun().protocolId, "");
  EXPECT_EQ(count("Select Count(*) From Protokolle"_sql), 0);
  EXPECT_THAT(erp.desktop.texts(),
              StartsWith("Verarbeitungsprotokoll konnte nicht erzeugt werden. Die Datenbank "
                         "hat die Änderungen zurückgenommen.\n"));
}

TEST_F(RunFailures, ARunWaitsForABusyDatabaseAlsoWhileItsProtocolIsMade) {
  stageMany(2);
  // The entry in the book of runs would be the first to wait.
  execute("DROP TABLE Importlaeufe"_sql);
  const auto other = erp.secondConnection();
  other->beginWork(nullptr);
  // On a server this row is what the protocol waits for.
  other->execute(sql("Insert Into Einstellungen (Section, [Key]) Values ('ImportJob2', 'ProtoID')"_sql));
  constexpr std::string_view waiting =
      "Die Datenbank wird von einem anderen Programm benutzt. Es wird gewartet...";
  events.onInfo = [&](std::string_view info) {
    if (info == waiting) engine.requestStop();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_EQ(engine.lastRun().stillWaiting, 2U);
  EXPECT_THAT(erp.desktop.shown, IsEmpty());

  events.onInfo = [&](std::string_view info) {
    if (info == waiting) other->rollbackWork();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(protocolLines(), 2);
  EXPECT_EQ(engine.ImpGetSetting("QXImportJob", "ImportJob2", "ProtoID"), engine.lastRun().protocolId);
  EXPECT_THAT(erp.desktop.shown, IsEmpty());
}

TEST_F(RunFailures, AnOrderWithoutAVersionComponentIsStampedWithTheVersionOfTheInterface) {
  FailingWorld world(erp.environment);
  world.fault.failing = "ErpComponents.createVersion";
  stageOrderOf("O1");
  ASSERT_TRUE(ImportJobObject2(world.environment).ProcessJobs());
  EXPECT_THAT(listed("Select PrgVersion From Auftragskopf"_sql), ElementsAre(" 6.3.0"));
  EXPECT_THAT(erp.diagnostics.text(), HasSubstr("version component | ErpComponents.createVersion fails"));
}

// Memory that is short.

class ShortMemory : public RunFailures {
protected:
  ShortMemory() { world.fault.outOfMemory = true; }

  bool runShort(const char* member, const char* only = "") {
    world.fault.failing = member;
    world.fault.only = only;
    return shortEngine.ProcessJobs();
  }

  FailingWorld world{erp.environment};
  ImportJobObject2 shortEngine{world.environment};
};

TEST_F(ShortMemory, EndsTheRunWithTheJobStillWaitingWhereverItIsShort) {
  stageMany(2);
  stageOrderOf("O1");
  struct Case {
    const char* member;
    const char* only;
    int done;
  };
  for (const Case& each :
       {Case{"Adressindex.CreateIndex", "70002", 0}, Case{"Protokoll.SetField", "70002", 0},
        Case{"Preisfindung.GetVKPreis", "A100", 2}}) {
    EXPECT_FALSE(runShort(each.member, each.only));
    EXPECT_EQ(shortEngine.lastRun().end, RunEnd::Broken);
    EXPECT_EQ(erp.desktop.shown.back().text,
              "Fehler bei der Verarbeitung: Der Arbeitsspeicher reicht nicht aus.");
    EXPECT_EQ(shortEngine.lastRun().error, 0U);
    EXPECT_EQ(outcomeOf("O1"), "30|");
    EXPECT_EQ(reasons("J2"), "");
    EXPECT_EQ(done(), each.done);
    EXPECT_EQ(orders(), 0);
  }
  EXPECT_FALSE(runShort("ErpComponents.createVersion"))
      << "a component that is there but cannot be made is not taken for a missing one";
  EXPECT_TRUE(runShort(""));
  EXPECT_EQ(jobType("O1"), 33);
  EXPECT_THAT(protocol(),
              ElementsAre("Kunden|70001|Erledigt", "Kunden|70002|Erledigt", "Auftrag|1|Erledigt"));
  EXPECT_EQ(doubled(), 0);
}

TEST_F(ShortMemory, TheHeavyOrdersPaidOnDeliveryAreToldAlsoWhenTheRunBreaksOff) {
  for (const char* key : {"O1", "O2"}) {
    stageOrder(key, {{"Zahlungsart", "NN"}});
    stagePosition(key, 1, key == std::string_view("O1") ? "A100" : "B200", 50);
  }
  // A host's connection has no groups: the first order is durable when the second one ends the run.
  world.environment.connection = hostConnection();
  EXPECT_FALSE(runShort("Preisfindung.GetVKPreis", "B200"));
  EXPECT_EQ(orders(), 1);
  EXPECT_EQ(erp.desktop.texts(),
            "Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: 1\n"
            "Fehler bei der Verarbeitung: Der Arbeitsspeicher reicht nicht aus.\n");
}

} // namespace
} // namespace qx
