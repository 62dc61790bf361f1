// Contract jobs: preparation, writing, checks, and how they stand against the contract table.
#include "order_fixture.h"

#include "engine/contract_check.h"

#include <gmock/gmock.h>

#include <array>

namespace qx {
namespace {

using ::testing::ElementsAre;

class ContractJobs : public OrderTest {
protected:
  ContractJobs() {
    usualContract = usualContract + Properties{{"Vertragsart", "WA"},
                                               {"Vertragsdatum", "01.02.2026"},
                                               {"Vertragsbeginn", "01.03.2026"},
                                               {"Menge", 2},
                                               {"Preis", 19.99}};
    add("Vertragsarten", {{"Vertragsart", "WA"}, {"Kurztext", "Wartung"}});
    add("Vertragsgegenstände", {{"VertrGegenstandsNr", "G1"}, {"Bez", "Anlage"}});
    add("VertragsGegenständePos", {{"VertrGegenstandsNr", "G1"}, {"Vertragsart", "WA"}});
  }
  std::unique_ptr<Recordset> contract() { return open("Select * From Verträge"_sql); }
};

TEST_F(ContractJobs, AContractIsWrittenWithItsDefaultsAndUpdatedUnderTheSameKey) {
  stageContract("V");
  execute("Update ImportKopf Set Intervall = Null Where JobID = 'V'"_sql);
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
  EXPECT_EQ(text("Select Memo0 From Protokollpositionen"_sql),
            "Vertragsnummer: V1\r\nVertragsdatum: 01.02.2026\r\nKundennummer: 20001");

  stageContract("K", {{"JobType", 40},
                      {"Zustand", "I"},
                      {"Vertragsende", "31.12.2027"},
                      {"Vertragstext", "Eigener Text"},
                      {"IndFild1", "5"}});
  run();
  EXPECT_EQ(jobType("K"), 43);
  EXPECT_EQ(contract()->recordCount(), 1U);
  EXPECT_EQ(contract()->text("Vertragsende") + contract()->text("Vertragstext"), "31.12.2027Eigener Text");
  EXPECT_EQ(contract()->text("PreisabweichungGrund"), "5");
  EXPECT_EQ(contract()->text("Intervall"), "0") << "only a missing interval takes the default";
}

TEST_F(ContractJobs, AContractWithEmptyKeyFieldsIsFoundAgain) {
  const Properties state{{"Vertragsnummer", ""}, {"Zustand", "E"}};
  stageContract("V1", state);
  run();
  stageContract("V2", state);
  run();
  EXPECT_EQ(contract()->recordCount(), 1U);
}

TEST_F(ContractJobs, WhatIsADateIsTakenAsItStands) {
  // Date of signature and begin, as staged and as written.
  using Case = std::array<const char*, 4>;
  for (const auto& [signedOn, begins, storedSignedOn, storedBegins] :
       {Case{"00:00:00", "00:00:00", "", ""}, Case{"12:00:00 AM", "12:00:00 AM", "12:00:00 AM", ""},
        Case{"1.2.2026", "08:30", "1.2.2026", "08:30"}, Case{"bald", "31.02.2026", "", ""}}) {
    stageContract("V", {{"Vertragsdatum", signedOn}, {"Vertragsbeginn", begins}});
    run();
    EXPECT_EQ(contract()->text("Vertragsdatum"), storedSignedOn);
    EXPECT_EQ(contract()->text("Vertragsbeginn"), storedBegins);
  }
}

TEST_F(ContractJobs, EveryFailedCheckIsReportedAndNothingIsWritten) {
  stageContract("V", {{"Kundennummer", "9"}, {"Vertragsart", "XX"}, {"Artikelnummer", "G9"}});
  run();
  EXPECT_EQ(outcomeOf("V"),
            "22|Die Kundennummer: '9' wurde noch nicht angelegt.\r\n"
            "Die Vertragsart: 'XX' wurde noch nicht angelegt.\r\n"
            "Es konnte keine Beziehung zwischen Vertragsart: 'XX' und Vertragsgegenstandsnummer: G9' "
            "ermittelt werden.\r\n"
            "Die Vertragsgegenstandsnummer: 'G9' wurde noch nicht angelegt.");
  EXPECT_EQ(contract()->recordCount(), 0U);
  EXPECT_THAT(
      events.infos,
      ::testing::Contains("Verträge werden überprüft und verarbeitet... (Kunde: 9 Vertragsgegenstand: G9)"));
  stageContract("E", {{"Zustand", "E"}, {"Vertragsart", "XX"}});
  stageContract("a", {{"Zustand", "e"}, {"Vertragsart", "XX"}});
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
  stageContract("V", {{"Artikelnummer", "alt"}});
  position("V", "P1", 7);
  position("V", "P2", 8);
  stageContract("K", {{"JobType", 40}, {"Vertragsnummer", "V2"}});
  position("K", "P3", 9);
  stageContract("R", {{"JobType", 22}, {"Vertragsnummer", "V3"}});
  position("R", "P4", 9);
  release("R");
  run();
  EXPECT_EQ(field("V", "Menge"), Value(7.0));
  EXPECT_EQ(field("V", "Artikelnummer"), Value("G1"));
  EXPECT_EQ(field("R", "Menge"), Value(2.0)) << "released in this run: its position comes one run later";
  EXPECT_EQ(keys("Select ChildID From ImportPos"_sql), "P3 P4 ");
}

TEST_F(ContractJobs, AFailingCustomerContractMarksTheCustomersJobs) {
  stageCustomer("C", "20001", {{"JobType", 10}});
  stageCustomer("D", "20001", {{"JobType", 13}});
  stageContract("K", {{"JobType", 40}, {"Vertragsart", "XX"}});
  run(qxProcessState::ProcessVerträge);
  EXPECT_EQ(jobType("K"), 42);
  EXPECT_EQ(outcomeOf("C"), "12|Im Kundenvertrag wurden ''Fehler'' festgestellt.")
      << "once, whatever else failed";
  EXPECT_EQ(jobType("D"), 13) << "a done job keeps its code";
  EXPECT_EQ(reasons("D"), "Im Kundenvertrag wurden ''Fehler'' festgestellt.");
}

TEST_F(ContractJobs, TheDialogsChecksStoreCodeAndReasons) {
  stageContract("V", {{"Menge", 0},
                      {"Zustand", "Q"},
                      {"Vertragsdatum", ""},
                      {"Vertragsbeginn", "bald"},
                      {"Vertragsart", "XX"}});
  stageContract("K", {{"JobType", 41}, {"Menge", -1}, {"Artikelnummer", "G9"}});
  EXPECT_EQ(engine.checkJob("V").text(),
            "Vertragsart ist nicht angelegt\r\nMenge ist faslch\r\nZustand ist "
            "falsch\r\nVertragsdatum ist falsch\r\nVertragsbeginn ist falsch\r\n");
  EXPECT_EQ(jobType("V"), 20);
  ContractCheck check(erp.environment);
  EXPECT_EQ(check.checkContract("V"), CheckStatus::Error);
  EXPECT_EQ(jobType("V"), 22);
  EXPECT_EQ(fields("V", {"Status", "ImportType"}), "30|30");
  EXPECT_EQ(check.checkContract("K"), CheckStatus::Error) << "one that came with its customer, by its key";
  EXPECT_EQ(reasons("K"), "Menge ist falsch\r\nVertragsgegenstand ist nicht angelegt\r\n");
  EXPECT_EQ(check.checkCustomerContracts("20001"), CheckStatus::Error);
  EXPECT_EQ(outcomeOf("K"), "42|Menge ist falsch\r\nVertragsgegenstand ist nicht angelegt\r\n");
  stageContract("K", {{"JobType", 42}});
  EXPECT_EQ(check.checkCustomerContracts("20001"), CheckStatus::Clean);
  EXPECT_EQ(jobType("K"), 40) << "a mended contract waits again";
  EXPECT_EQ(field("K", "Status").integer(), 10);
  EXPECT_TRUE(field("K", "Fehlertext").isNull());
}

TEST_F(ContractJobs, StagedContractsAreComparedWithStoredOnes) {
  std::string jobId = "?";
  const auto state = [&] { return engine.GetVertragsZustand("20001", "V1", "G1", "WA", &jobId); };
  stageContract("K", {{"JobType", 40}});
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
  stageContract("K", {{"JobType", 40}, {"Preis", 20}});
  EXPECT_EQ(state(), 1);
}

TEST_F(ContractJobs, APriceIsStoredAndComparedWithFourDecimals) {
  if (!erp.onServer()) {
    // A host's table takes every number.
    execute("CREATE TABLE Ohne AS SELECT * FROM Verträge"_sql);
    execute("DROP TABLE Verträge"_sql);
    execute("ALTER TABLE Ohne RENAME TO Verträge"_sql);
  }
  stageContract("V", {{"Preis", 10.12345678}});
  run();
  EXPECT_EQ(text("Select Betrag From Verträge"_sql), "10.1235");
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
  same.Zustand = "G";
  EXPECT_TRUE(engine.GetDiffVertrags(same)) << "texts are compared as well";
  same.Zustand = "";
  same.Preis = 1e20;
  EXPECT_TRUE(engine.GetDiffVertrags(same));
}

TEST_F(ContractJobs, APriceOrQuantityThatDoesNotFitIsNamedWithTheOtherReasons) {
  stageContract("V", {{"Vertragsart", "XX"}, {"Preis", 1e20}, {"Menge", -1e308}});
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
    stageContract(jobId, {{"JobType", 40},
                          {"Vertragsnummer", number},
                          {"Artikelnummer", number[0] == 'V' ? "G1" : "g1"},
                          {"Vertragsart", number[0] == 'V' ? "WA" : "wa"}});
  };
  staged("K", "V1");
  run();
  staged("L", "v1");
  EXPECT_EQ(engine.GetVertragsZustand("20001", "v1", "g1", "wa"), 2) << "nothing would change";
  execute("Update ImportKopf Set Preis = 5 Where JobID = 'L'"_sql);
  run();
  EXPECT_EQ(jobType("L"), 43) << reasons("L");
  EXPECT_THAT(listed("Select Vertragsnummer, VertrGegenstandsNr, Vertragsart, Betrag From Verträge"_sql),
              ::testing::ElementsAre("V1|G1|WA|5"));
}

TEST_F(ContractJobs, AJobCodeBeyondItsBitsIsNoOtherCode) {
  stageContract("V");
  execute("Update ImportKopf Set JobType = 65558, ProcessWarning = 1"_sql);
  run();
  EXPECT_EQ(text("Select JobType From ImportKopf"_sql), "65558");
  EXPECT_TRUE(contract()->eof());
}

TEST_F(ContractJobs, AJobThatIsDoneDoesNotHideAChangeThatWaits) {
  stageContract("OLD", {{"JobType", 40}});
  run();
  stageContract("NEW", {{"JobType", 40}, {"Preis", 20}});
  std::string jobId;
  EXPECT_EQ(engine.GetVertragsZustand("20001", "V1", "G1", "WA", &jobId), 1);
  EXPECT_EQ(jobId, "NEW");
}

TEST_F(ContractJobs, TheRemarkIsThatOfTheContractElseThatOfTheJob) {
  stageContract("V", {{"Bemerkung", "Zufahrt über den Hof"}});
  run();
  EXPECT_EQ(contract()->text("Bemerkung"), "Zufahrt über den Hof");
  stageContract("V", {{"Bemerkung", "vom Vorgang"}});
  execute("Update ImportKopf Set Info = 'vom Vertrag' Where JobID = 'V'"_sql);
  run();
  EXPECT_EQ(contract()->text("Bemerkung"), "vom Vertrag");
}

TEST_F(ContractJobs, StoredContractsThatNobodyCarriesAreMarkedOnce) {
  stageContract("K", {{"JobType", 40}});
  run();
  EXPECT_EQ(engine.GetDelVerträge("20001"), 0) << "the done job carries the line";
  execute("Delete From ImportKopf"_sql);
  EXPECT_EQ(engine.GetDelVerträge("20001"), 1);
  EXPECT_EQ(engine.GetDelVerträge("20001"), 1);
  EXPECT_EQ(count("Select Count(*) From ImportKopf Where JobType = 44 And Artikelnummer = 'G1'"_sql), 1);
  EXPECT_EQ(engine.GetVertragsZustand("20001", "V1", "G1", "WA"), 3);
  EXPECT_EQ(contract()->recordCount(), 1U) << "the contract itself stays";
  stageContract("K2", {{"JobType", 40}});
  EXPECT_EQ(engine.GetDelVerträge("20001"), 0);
  EXPECT_EQ(count("Select Count(*) From ImportKopf Where JobType = 44"_sql), 0);
}

} // namespace
} // namespace qx
