// Contract jobs: preparation, writing, checks, and how they stand against the contract table.
#include "order_fixture.h"

#include "engine/contract_check.h"

#include <gmock/gmock.h>

namespace qx {
namespace {

using ::testing::ElementsAre;

class ContractJobs : public OrderTest {
protected:
  ContractJobs() {
    erp::TableFiller(connection(), "Vertragsarten").add({{"Vertragsart", "WA"}, {"Kurztext", "Wartung"}});
    erp::TableFiller(connection(), "Vertragsgegenstände")
        .add({{"VertrGegenstandsNr", "G1"}, {"Bez", "Anlage"}});
    erp::TableFiller(connection(), "VertragsGegenständePos")
        .add({{"VertrGegenstandsNr", "G1"}, {"Vertragsart", "WA"}});
  }
  void stageContract(std::string_view jobId, const std::function<void(VertragFields&)>& change = {}) {
    Vertrag job(erp.environment);
    job.JobID = jobId;
    job.Kundennummer = "20001";
    job.Vertragsnummer = "V1";
    job.Artikelnummer = "G1";
    job.Vertragsart = "WA";
    job.Vertragsdatum = "01.02.2026";
    job.Vertragsbeginn = "01.03.2026";
    job.Menge = 2;
    job.Preis = 19.99;
    if (change) change(job);
    writeStaged(connection(), static_cast<const VertragFields&>(job));
  }
  std::unique_ptr<Recordset> contract() { return connection().open(sql("Select * From Verträge"_sql)); }
};

TEST_F(ContractJobs, AContractIsWrittenWithItsDefaultsAndUpdatedUnderTheSameKey) {
  stageContract("V");
  connection().execute(sql("Update ImportKopf Set Intervall = Null Where JobID = 'V'"_sql));
  ASSERT_TRUE(run());
  ASSERT_EQ(jobType("V"), 23) << reasons("V");
  const auto line = contract();
  EXPECT_EQ(line->text("Vertragsende") + line->text("Zahlungsweise") + line->text("Zustand"), "9999990A");
  EXPECT_EQ(line->text("Intervall") + line->text("IntervallErstmals") + line->text("IntervallVerlängerung"),
            "121212");
  EXPECT_EQ(line->text("Vertragstext"), "Anlage");
  EXPECT_EQ(line->text("ÄndUser") + line->text("ÄndDatum"), "Import20261124103000");
  EXPECT_EQ(line->value("Betrag"), Value(money("19.99")));
  EXPECT_THAT(protocol(), ElementsAre("Vertrag|V1|Erledigt"));
  EXPECT_EQ(erp.text(sql("Select Memo0 From Protokollpositionen"_sql)),
            "Vertragsnummer: V1\r\nVertragsdatum: 01.02.2026\r\nKundennummer: 20001");

  stageContract("K", [](VertragFields& job) {
    job.JobType = 40;
    job.Zustand = "I";
    job.Vertragsende = "31.12.2027";
    job.Vertragstext = "Eigener Text";
    job.IndFild1 = "5";
  });
  run();
  EXPECT_EQ(jobType("K"), 43);
  EXPECT_EQ(contract()->recordCount(), 1U);
  EXPECT_EQ(contract()->text("Vertragsende") + contract()->text("Vertragstext"), "31.12.2027Eigener Text");
  EXPECT_EQ(contract()->text("PreisabweichungGrund"), "5");
  EXPECT_EQ(contract()->text("Intervall"), "0") << "only a missing interval takes the default";
}

TEST_F(ContractJobs, AContractWithEmptyKeyFieldsIsFoundAgain) {
  const auto state = [](VertragFields& job) {
    job.Vertragsnummer = "";
    job.Zustand = "E";
  };
  stageContract("V1", state);
  run();
  stageContract("V2", state);
  run();
  EXPECT_EQ(contract()->recordCount(), 1U);
}

TEST_F(ContractJobs, WhatIsADateIsTakenAsItStands) {
  struct Case {
    const char* signedOn;
    const char* begins;
    const char* storedSignedOn;
    const char* storedBegins;
  };
  for (const Case& each : {Case{"00:00:00", "00:00:00", "", ""},
                           {"12:00:00 AM", "12:00:00 AM", "12:00:00 AM", ""},
                           {"1.2.2026", "08:30", "1.2.2026", "08:30"},
                           {"bald", "31.02.2026", "", ""}}) {
    stageContract("V", [&](VertragFields& job) {
      job.Vertragsdatum = each.signedOn;
      job.Vertragsbeginn = each.begins;
    });
    run();
    EXPECT_EQ(contract()->text("Vertragsdatum"), each.storedSignedOn);
    EXPECT_EQ(contract()->text("Vertragsbeginn"), each.storedBegins);
  }
}

TEST_F(ContractJobs, EveryFailedCheckIsReportedAndNothingIsWritten) {
  stageContract("V", [](VertragFields& job) {
    job.Kundennummer = "9";
    job.Vertragsart = "XX";
    job.Artikelnummer = "G9";
  });
  run();
  EXPECT_EQ(jobType("V"), 22);
  EXPECT_EQ(reasons("V"),
            "Die Kundennummer: '9' wurde noch nicht angelegt.\r\n"
            "Die Vertragsart: 'XX' wurde noch nicht angelegt.\r\n"
            "Es konnte keine Beziehung zwischen Vertragsart: 'XX' und Vertragsgegenstandsnummer: G9' "
            "ermittelt werden.\r\n"
            "Die Vertragsgegenstandsnummer: 'G9' wurde noch nicht angelegt.");
  EXPECT_EQ(contract()->recordCount(), 0U);
  EXPECT_THAT(
      events.infos,
      ::testing::Contains("Verträge werden überprüft und verarbeitet... (Kunde: 9 Vertragsgegenstand: G9)"));
  stageContract("E", [](VertragFields& job) {
    job.Zustand = "E";
    job.Vertragsart = "XX";
  });
  stageContract("a", [](VertragFields& job) {
    job.Zustand = "e";
    job.Vertragsart = "XX";
  });
  run();
  EXPECT_EQ(jobType("E"), 23) << "an ended contract is not checked";
  EXPECT_EQ(jobType("a"), 22) << "the state is compared exactly";
}

TEST_F(ContractJobs, TheFirstPositionMovesIntoTheHeaderBeforeTheReset) {
  const auto position = [&](const char* job, const char* key, double quantity) {
    ImportJobSubItem item;
    item.JobID = job;
    item.ChildID = key;
    item.JobType = 1001;
    item.Menge = quantity;
    item.Artikelnummer = "G1";
    item.Vertragsart = "WA";
    writeStaged(connection(), item);
  };
  stageContract("V", [](VertragFields& job) { job.Artikelnummer = "alt"; });
  position("V", "P1", 7);
  position("V", "P2", 8);
  stageContract("K", [](VertragFields& job) {
    job.JobType = 40;
    job.Vertragsnummer = "V2";
  });
  position("K", "P3", 9);
  stageContract("R", [](VertragFields& job) {
    job.JobType = 22;
    job.Vertragsnummer = "V3";
  });
  position("R", "P4", 9);
  release("R");
  run();
  EXPECT_EQ(field("V", "Menge"), Value(7.0));
  EXPECT_EQ(field("V", "Artikelnummer"), Value("G1"));
  EXPECT_EQ(field("R", "Menge"), Value(2.0)) << "released in this run: its position comes one run later";
  EXPECT_EQ(erp.text(sql("Select Group_Concat(ChildID) From ImportPos"_sql)), "P3,P4");
}

TEST_F(ContractJobs, AFailingCustomerContractMarksTheCustomersJobs) {
  stageCustomer("C", "20001", [](KundeFields& job) { job.JobType = 10; });
  stageCustomer("D", "20001", [](KundeFields& job) { job.JobType = 13; });
  stageContract("K", [](VertragFields& job) {
    job.JobType = 40;
    job.Vertragsart = "XX";
  });
  run(qxProcessState::ProcessVerträge);
  EXPECT_EQ(jobType("K"), 42);
  EXPECT_EQ(jobType("C"), 12);
  EXPECT_EQ(reasons("C"), "Im Kundenvertrag wurden ''Fehler'' festgestellt.") << "once, whatever else failed";
  EXPECT_EQ(jobType("D"), 13) << "a done job keeps its code";
  EXPECT_EQ(reasons("D"), "Im Kundenvertrag wurden ''Fehler'' festgestellt.");
}

TEST_F(ContractJobs, TheDialogsChecksStoreCodeAndReasons) {
  stageContract("V", [](VertragFields& job) {
    job.Menge = 0;
    job.Zustand = "Q";
    job.Vertragsdatum = "";
    job.Vertragsbeginn = "bald";
    job.Vertragsart = "XX";
  });
  stageContract("K", [](VertragFields& job) {
    job.JobType = 41;
    job.Menge = -1;
    job.Artikelnummer = "G9";
  });
  EXPECT_EQ(engine.checkJob("V").text(),
            "Vertragsart ist nicht angelegt\r\nMenge ist faslch\r\nZustand ist "
            "falsch\r\nVertragsdatum ist falsch\r\nVertragsbeginn ist falsch\r\n");
  EXPECT_EQ(jobType("V"), 20);
  ContractCheck check(erp.environment);
  EXPECT_EQ(check.checkContract("V"), CheckStatus::Error);
  EXPECT_EQ(jobType("V"), 22);
  EXPECT_EQ(field("V", "Status").integer(), 30);
  EXPECT_EQ(field("V", "ImportType").integer(), 30);
  EXPECT_EQ(check.checkContract("K"), CheckStatus::Error) << "one that came with its customer, by its key";
  EXPECT_EQ(reasons("K"), "Menge ist falsch\r\nVertragsgegenstand ist nicht angelegt\r\n");
  EXPECT_EQ(check.checkCustomerContracts("20001"), CheckStatus::Error);
  EXPECT_EQ(jobType("K"), 42);
  EXPECT_EQ(reasons("K"), "Menge ist falsch\r\nVertragsgegenstand ist nicht angelegt\r\n");
  stageContract("K", [](VertragFields& job) { job.JobType = 42; });
  EXPECT_EQ(check.checkCustomerContracts("20001"), CheckStatus::Clean);
  EXPECT_EQ(jobType("K"), 40) << "a mended contract waits again";
  EXPECT_EQ(field("K", "Status").integer(), 10);
  EXPECT_TRUE(field("K", "Fehlertext").isNull());
}

TEST_F(ContractJobs, StagedContractsAreComparedWithStoredOnes) {
  std::string jobId = "?";
  const auto state = [&] { return engine.GetVertragsZustand("20001", "V1", "G1", "WA", &jobId); };
  stageContract("K", [](VertragFields& job) { job.JobType = 40; });
  EXPECT_EQ(state(), 0);
  EXPECT_EQ(jobId, "K");
  run();
  EXPECT_EQ(state(), 2);
  VertragFields changed;
  changed.Kundennummer = "20001";
  changed.Vertragsnummer = "V1";
  changed.Artikelnummer = "G1";
  changed.Vertragsart = "WA";
  EXPECT_TRUE(engine.GetDiffVertrags(changed));
  stageContract("K", [](VertragFields& job) {
    job.JobType = 40;
    job.Preis = 20;
  });
  EXPECT_EQ(state(), 1);
}

TEST_F(ContractJobs, APriceIsStoredAndComparedWithFourDecimals) {
  // A host's table takes every number.
  connection().execute(sql("CREATE TABLE Ohne AS SELECT * FROM Verträge"_sql));
  connection().execute(sql("DROP TABLE Verträge"_sql));
  connection().execute(sql("ALTER TABLE Ohne RENAME TO Verträge"_sql));
  stageContract("V", [](VertragFields& job) { job.Preis = 10.12345678; });
  run();
  EXPECT_EQ(erp.text(sql("Select Betrag From Verträge"_sql)), "10.1235");
  EXPECT_EQ(engine.GetVertragsZustand("20001", "V1", "G1", "WA"), 2);
  VertragFields same;
  same.Kundennummer = "20001";
  same.Vertragsnummer = "V1";
  same.Artikelnummer = "G1";
  same.Vertragsart = "WA";
  same.Vertragsdatum = "01.02.2026";
  same.Vertragsbeginn = "01.03.2026";
  same.Menge = 2;
  same.Preis = 10.12345678;
  EXPECT_FALSE(engine.GetDiffVertrags(same));
  same.Preis = 1e20;
  EXPECT_TRUE(engine.GetDiffVertrags(same));
}

TEST_F(ContractJobs, APriceOrQuantityThatDoesNotFitIsNamedWithTheOtherReasons) {
  stageContract("V", [](VertragFields& job) {
    job.Vertragsart = "XX";
    job.Preis = 1e20;
    job.Menge = -1e308;
  });
  run();
  EXPECT_EQ(jobType("V"), 22);
  EXPECT_EQ(
      reasons("V"),
      "Die Vertragsart: 'XX' wurde noch nicht angelegt.\r\n"
      "Es konnte keine Beziehung zwischen Vertragsart: 'XX' und Vertragsgegenstandsnummer: G1' ermittelt "
      "werden.\r\n"
      "Der Preis: '1E+20' ist zu groß.\r\n"
      "Die Menge: '-1E+308' ist zu groß.");
  EXPECT_TRUE(contract()->eof());
}

TEST_F(ContractJobs, AnUpdateKeepsTheKeyAsTheLineSpellsIt) {
  const auto staged = [this](const char* jobId, const char* number) {
    stageContract(jobId, [number](VertragFields& job) {
      job.JobType = 40;
      job.Vertragsnummer = number;
      job.Artikelnummer = number[0] == 'V' ? "G1" : "g1";
      job.Vertragsart = number[0] == 'V' ? "WA" : "wa";
    });
  };
  staged("K", "V1");
  run();
  staged("L", "v1");
  EXPECT_EQ(engine.GetVertragsZustand("20001", "v1", "g1", "wa"), 2) << "nothing would change";
  connection().execute(sql("Update ImportKopf Set Preis = 5 Where JobID = 'L'"_sql));
  run();
  EXPECT_EQ(jobType("L"), 43) << reasons("L");
  EXPECT_EQ(erp.text(sql("Select Vertragsnummer || VertrGegenstandsNr || Vertragsart || Betrag From "
                         "Verträge"_sql)),
            "V1G1WA5");
}

TEST_F(ContractJobs, AJobCodeBeyondItsBitsIsNoOtherCode) {
  stageContract("V");
  connection().execute(sql("Update ImportKopf Set JobType = 65558, ProcessWarning = 1"_sql));
  run();
  EXPECT_EQ(erp.text(sql("Select JobType From ImportKopf"_sql)), "65558");
  EXPECT_TRUE(contract()->eof());
}

TEST_F(ContractJobs, AJobThatIsDoneDoesNotHideAChangeThatWaits) {
  stageContract("OLD", [](VertragFields& job) { job.JobType = 40; });
  run();
  stageContract("NEW", [](VertragFields& job) {
    job.JobType = 40;
    job.Preis = 20;
  });
  std::string jobId;
  EXPECT_EQ(engine.GetVertragsZustand("20001", "V1", "G1", "WA", &jobId), 1);
  EXPECT_EQ(jobId, "NEW");
}

TEST_F(ContractJobs, TheRemarkIsThatOfTheContractElseThatOfTheJob) {
  stageContract("V", [](VertragFields& job) { job.Bemerkung = "Zufahrt über den Hof"; });
  run();
  EXPECT_EQ(contract()->text("Bemerkung"), "Zufahrt über den Hof");
  stageContract("V", [](VertragFields& job) { job.Bemerkung = "vom Vorgang"; });
  connection().execute(sql("Update ImportKopf Set Info = 'vom Vertrag' Where JobID = 'V'"_sql));
  run();
  EXPECT_EQ(contract()->text("Bemerkung"), "vom Vertrag");
}

TEST_F(ContractJobs, StoredContractsThatNobodyCarriesAreMarkedOnce) {
  stageContract("K", [](VertragFields& job) { job.JobType = 40; });
  run();
  EXPECT_EQ(engine.GetDelVerträge("20001"), 0) << "the done job carries the line";
  connection().execute(sql("Delete From ImportKopf"_sql));
  EXPECT_EQ(engine.GetDelVerträge("20001"), 1);
  EXPECT_EQ(engine.GetDelVerträge("20001"), 1);
  EXPECT_EQ(count(sql("Select Count(*) From ImportKopf Where JobType = 44 And Artikelnummer = 'G1'"_sql)), 1);
  EXPECT_EQ(engine.GetVertragsZustand("20001", "V1", "G1", "WA"), 3);
  EXPECT_EQ(contract()->recordCount(), 1U) << "the contract itself stays";
  stageContract("K2", [](VertragFields& job) { job.JobType = 40; });
  EXPECT_EQ(engine.GetDelVerträge("20001"), 0);
  EXPECT_EQ(count(sql("Select Count(*) From ImportKopf Where JobType = 44"_sql)), 0);
}

} // namespace
} // namespace qx
