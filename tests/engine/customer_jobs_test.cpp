// Customer jobs: what a run writes, creates and refuses.
#include "engine_fixture.h"

#include "erp/table_filler.h"

#include <gmock/gmock.h>

#include <array>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using CustomerJobs = EngineTest;

TEST_F(CustomerJobs, EveryMissingCodeIsReportedInOrderAndNothingIsWritten) {
  stageCustomer("J1", "70001",
                {{"Kundengruppe", "GX"},
                 {"Vertreter1", ""},
                 {"Vertreter2", "V2"},
                 {"Vertreter3", "V2"},
                 {"Zahlungsart", "ZX"},
                 {"Währung", "XYZ"},
                 {"BLZ", "99"},
                 {"Eingangsdatum", "31.02.2006"}});
  run();
  EXPECT_EQ(outcomeOf("J1"),
            "12|Die Kundengruppe: 'GX' wurde noch nicht angelegt.\r\n"
            "Um automatisch die Kundengruppe anzulegen, stellen Sie dies bitte in den Optionen ein.\r\n"
            "Der Vertreter: 'V2' wurde noch nicht angelegt.\r\n"
            "Um automatisch den Vertreter anzulegen, stellen Sie dies bitte in den Optionen ein.\r\n"
            "Der Vertreter: 'V2' wurde noch nicht angelegt.\r\n"
            "Um automatisch den Vertreter anzulegen, stellen Sie dies bitte in den Optionen ein.\r\n"
            "Die Zahlungsart: 'ZX' wurde noch nicht angelegt.\r\n"
            "Um automatisch die Zahlungsart anzulegen, stellen Sie dies bitte in den Optionen ein.\r\n"
            "Die Währung: 'XYZ' ist nicht angelegt.\r\n"
            "Die Bankleitzahl: '99' wurde noch nicht angelegt.\r\n"
            "Um automatisch die Bankleitzahl anzulegen, stellen Sie dies bitte in den Optionen ein.\r\n"
            "Das Eingangsdatum: '31.02.2006' ist kein Datum.");
  EXPECT_EQ(engine.strGlobalProcErr, reasons("J1"));
  EXPECT_EQ(engine.strGlobalKundeProcErr, reasons("J1"));
  EXPECT_EQ(count("Select Count(*) From Kundenstamm"_sql), 0);
  EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Fehler"));
}

TEST_F(CustomerJobs, MissingCodesAreCreatedOnceWhenTheOptionsAllow) {
  for (const auto* option :
       {"KundenKundengruppe", "KundenVertreter", "KundenZahlungsart", "KundenBankleitzahl"})
    erp.setOption(option, "1");
  stageCustomer("J1", "70001",
                {{"Kundengruppe", "GX"},
                 {"Vertreter1", "V9"},
                 {"Vertreter2", "V9"},
                 {"Zahlungsart", "ZX"},
                 {"BLZ", "99000000"},
                 {"Kreditinstitut", "Musterbank"}});
  run();
  EXPECT_EQ(jobType("J1"), 13);
  const auto single = [&](const Sql& statement) { return connection().open(statement)->value(0).text(); };
  EXPECT_EQ(single(sql("Select Langtext From Kundengruppen Where Kundengruppe = 'GX'"_sql)),
            "Kundengruppe GX");
  EXPECT_EQ(single(sql("Select Suchbegriff From Vertreter Where VertreterNr = 'V9'"_sql)), "Vertreter V9");
  EXPECT_EQ(single(sql("Select Bez1 From Vertreter Where VertreterNr = 'V9'"_sql)), "Vertreter V9");
  EXPECT_EQ(single(sql("Select Kurztext From Zahlungsarten Where Zahlungsart = 'ZX'"_sql)), "Zahlungsart ZX");
  EXPECT_EQ(single(sql("Select Kreditinstitut From Kreditinstitute Where Bankleitzahl = '99000000'"_sql)),
            "Musterbank");
  EXPECT_EQ(customer("70001", "VertreterNr2"), Value("V9"));
  EXPECT_EQ(customer("70001", "Bankleitzahl"), Value("99000000"));
}

TEST_F(CustomerJobs, EachOptionCreatesItsOwnKindOfCodeAndNoOther) {
  struct Kind {
    const char* option;
    Sql created; ///< deletes what the option has created
    std::string reason;
  };
  const auto missing = [](const std::string& article, const std::string& name, const char* code) {
    return (article == "den" ? "Der " : "Die ") + name + ": '" + code + "' wurde noch nicht angelegt.\r\n" +
           "Um automatisch " + article + " " + name +
           " anzulegen, stellen Sie dies bitte in den Optionen ein.";
  };
  const std::array kinds{
      Kind{"KundenKundengruppe", sql("Delete From Kundengruppen Where Kundengruppe = 'GX'"_sql),
           missing("die", "Kundengruppe", "GX")},
      Kind{"KundenVertreter", sql("Delete From Vertreter Where VertreterNr = 'V9'"_sql),
           missing("den", "Vertreter", "V9")},
      Kind{"KundenZahlungsart", sql("Delete From Zahlungsarten Where Zahlungsart = 'ZX'"_sql),
           missing("die", "Zahlungsart", "ZX")},
      Kind{"KundenBankleitzahl", sql("Delete From Kreditinstitute Where Bankleitzahl = '99000000'"_sql),
           missing("die", "Bankleitzahl", "99000000")}};
  // Each of them alone is on, then none.
  for (std::size_t on = 0; on <= kinds.size(); ++on) {
    SCOPED_TRACE(on);
    std::string expected = "12";
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      erp.setOption(kinds[i].option, i == on ? "1" : "0");
      if (i != on) expected += (expected == "12" ? "|" : "\r\n") + kinds[i].reason;
    }
    execute("Delete From ImportKopf"_sql);
    stageCustomer("J1", "70001",
                  {{"Kundengruppe", "GX"}, {"Vertreter1", "V9"}, {"Zahlungsart", "ZX"}, {"BLZ", "99000000"}});
    run();
    EXPECT_EQ(outcomeOf("J1"), expected);
    for (std::size_t i = 0; i < kinds.size(); ++i) EXPECT_EQ(execute(kinds[i].created), i == on ? 1 : 0) << i;
  }
  EXPECT_EQ(count("Select Count(*) From Kundenstamm"_sql), 0);
}

TEST_F(CustomerJobs, OnlyItsOwnOptionsLetARunCheckAndCompareAddresses) {
  stageCustomer("J0", "70001", {{"Strasse", "Kai 1"}});
  run();
  struct Case {
    const char* automatic;
    const char* compare;
    std::int16_t jobType;
  };
  // A changed street is a finding of the comparison, and findings park only in automatic mode.
  for (const Case& each : {Case{"0", "1", 13}, {"1", "1", 11}, {"1", "0", 13}}) {
    erp.setOption("AutomatischVerarbeiten", each.automatic);
    erp.setOption("KundeAdressProof", each.compare);
    execute("Update Kundenstamm Set Strasse = 'Kai 1'"_sql);
    stageCustomer("J1", "70001", {{"Strasse", "Kai 2"}});
    run();
    EXPECT_EQ(jobType("J1"), each.jobType) << each.automatic << each.compare;
    EXPECT_EQ(customer("70001", "Strasse"), Value(each.jobType == 13 ? "Kai 2" : "Kai 1"));
    execute("Delete From ImportKopf"_sql);
  }
}

TEST_F(CustomerJobs, CodesThatWereCreatedStayWhenALaterCheckFailsTheJob) {
  erp.setOption("KundenKundengruppe", "1");
  stageCustomer("J1", "70001", {{"Kundengruppe", "GX"}, {"Zahlungsart", "ZX"}});
  run();
  EXPECT_EQ(jobType("J1"), 12);
  EXPECT_EQ(count("Select Count(*) From Kundengruppen Where Kundengruppe = 'GX'"_sql), 1);
  EXPECT_EQ(count("Select Count(*) From Kundenstamm"_sql), 0);
}

TEST_F(CustomerJobs, AJobWithoutANumberIsRefused) {
  stageCustomer("J1", "");
  run();
  EXPECT_EQ(outcomeOf("J1"), "12|Die Kundennummer fehlt.");
}

TEST_F(CustomerJobs, TwoJobsOfOneNumberCreateAndThenChange) {
  stageCustomer("J1", "70001");
  stageCustomer("J2", "70001", {{"Bez1", "Zweite"}});
  run();
  EXPECT_EQ(customer("70001", "Bez1"), Value("Zweite"));
  EXPECT_EQ(count("Select Count(*) From Kundenstamm"_sql), 1);
  const auto infos = open("Select Memo0 From Protokollpositionen"_sql);
  EXPECT_THAT(infos->text("Memo0"), HasSubstr("Neukunde angelegt."));
  infos->moveNext();
  EXPECT_THAT(infos->text("Memo0"), HasSubstr("Kunde geändert."));
}

TEST_F(CustomerJobs, FurtherAddressesAreAddedOnceAndNeverOverwritten) {
  const Properties withAddress{
      {"VS_AdrNr", "2"}, {"VS_Bez1", "Lager"}, {"VS_Ort", "Kiel"}, {"RG_AdrNr", "3"}};
  stageCustomer("J1", "70001", withAddress);
  run();
  stageCustomer("J2", "70001", withAddress + Properties{{"VS_Ort", "Lübeck"}});
  run();
  const auto addresses = open("Select * From Adressenstamm Where Kundennummer = '70001'"_sql);
  ASSERT_EQ(addresses->recordCount(), 1U) << "a number without any text adds no address";
  EXPECT_EQ(addresses->text("Ort"), "Kiel");
  EXPECT_TRUE(addresses->value("Strasse").isNull());
}

TEST_F(CustomerJobs, ARefusedAddressLeavesNoCustomerBehind) {
  refuse("INSERT ON Adressenstamm"_sql, "'Adresse gesperrt'"_sql);
  stageCustomer("J1", "70001", {{"VS_AdrNr", "2"}, {"VS_Bez1", "Lager"}});
  EXPECT_TRUE(run());
  EXPECT_EQ(outcomeOf("J1"), "12|Adresse gesperrt");
  EXPECT_EQ(count("Select Count(*) From Kundenstamm"_sql), 0);
}

TEST_F(CustomerJobs, OnAHostsConnectionAFailureTakesBackWhatStoodAlready) {
  add("Kundenstamm", {{"Kundennummer", "70001"}, {"Bez1", "Alt"}, {"Telefon", "1"}, {"ÄndUser", "Anna"}});
  add("Adressenstamm", {{"Kundennummer", "70001"}, {"Adressnummer", "2"}});
  refuse("INSERT ON Adressenstamm"_sql, "new.Adressnummer = '3'"_sql, "'Adresse gesperrt'"_sql);
  refuse("UPDATE ON ImportKopf"_sql, "new.JobID = 'DONE' And new.JobType = 13"_sql, "'nie fertig'"_sql);
  const auto withAddresses = [](const char* last) {
    return Properties{{"VS_AdrNr", "2"}, {"VS_Bez1", "Lager"}, {"RG_AdrNr", last}, {"RG_Bez1", "Büro"}};
  };
  stageCustomer("OLD", "70001", withAddresses("3"));
  stageCustomer("NEW", "70002", withAddresses("3"));
  stageCustomer("DONE", "70003", withAddresses("4"));
  becomeHost();
  EXPECT_TRUE(run());
  EXPECT_EQ(reasons("OLD") + "|" + reasons("NEW") + "|" + reasons("DONE"),
            "Adresse gesperrt|Adresse gesperrt|nie fertig");
  EXPECT_EQ(count("Select Count(*) From ImportKopf Where JobType = 12"_sql), 3);
  EXPECT_THAT(
      listed("Select Kundennummer, Bez1, Telefon, ÄndUser, Coalesce(ÄndDatum, '-'), Coalesce(PLZ, '-') "
             "From Kundenstamm"_sql),
      ::testing::ElementsAre("70001|Alt|1|Anna|-|-"));
  EXPECT_THAT(listed("Select Kundennummer, Adressnummer From Adressenstamm"_sql),
              ::testing::ElementsAre("70001|2"));
}

TEST_F(CustomerJobs, AFailedCustomersIndexIsBroughtUpToDateWhateverTheFailureCameFrom) {
  refuse("INSERT ON Kundenstamm"_sql, "'Kunde gesperrt'"_sql);
  for (const char* number : {"70001", "70002"})
    execute("Insert Into Adressindex (Kundennummer, Art) Values ('"_sql, value(number), "', 1)"_sql);
  stageCustomer("REFUSED", "70001");
  stageCustomer("SENTENCE", "70002", {{"Währung", "XXX"}});
  run();
  EXPECT_EQ(reasons("REFUSED") + "|" + reasons("SENTENCE"),
            "Kunde gesperrt|Die Währung: 'XXX' ist nicht angelegt.");
  EXPECT_EQ(count("Select Count(*) From Adressindex"_sql), 0);
}

// The automatic check.

TEST_F(CustomerJobs, InAutomaticModeFindingsParkTheJobUntilItIsReleased) {
  erp.setOption("AutomatischVerarbeiten", "1");
  stageCustomer("J1", "70001", {{"Versandart", "SX"}, {"Fehlertext", "alter Text"}});
  run();
  EXPECT_EQ(outcomeOf("J1"),
            "11|Beim Verarbeiten wurden Warnungen festgestellt.\r\nVersandart: 'SX' ist nicht angelegt.\r\n");
  EXPECT_EQ(count("Select Count(*) From Kundenstamm"_sql), 0);
  EXPECT_EQ(count("Select Count(*) From Adressindex"_sql), 0);
  EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Warnung"));
  run();
  EXPECT_EQ(jobType("J1"), 11) << "a parked job is not taken again";
  EXPECT_EQ(protocolLines(), 1);
  release("J1");
  run();
  EXPECT_EQ(jobType("J1"), 13) << "the missing shipping method does not stop the writing";
  EXPECT_EQ(reasons("J1"), "");
  EXPECT_EQ(protocolLines(), 2);
}

TEST_F(CustomerJobs, AnEvaluatedRunCanBeToldToLeaveTheCheckOut) {
  erp.setOption("AutomatischVerarbeiten", "1");
  stageCustomer("J1", "70001", {{"Versandart", "SX"}});
  run(qxProcessState::ProcessAll, true);
  EXPECT_EQ(jobType("J1"), 13);
}

TEST_F(CustomerJobs, TheCheckListsItsFindingsInOrderAndTakesTheWorst) {
  stageCustomer("J0", "70001", {{"Bez2", "Alt"}, {"VS_AdrNr", "2"}, {"VS_Bez1", "Lager"}});
  run();
  erp.setOption("AutomatischVerarbeiten", "1");
  erp.setOption("KundeAdressProof", "1");
  stageCustomer("J1", "70001",
                {{"Bez2", "Neu"},
                 {"Kundengruppe", "GX"},
                 {"Vertreter1", "V1X"},
                 {"Vertreter2", "V2X"},
                 {"Zahlungsart", "ZX"},
                 {"ZahlungsbedSchl", "BX"},
                 {"BLZ", "99"},
                 {"VS_AdrNr", "2"},
                 {"VS_Bez1", "Halle"},
                 {"VS_Strasse", "nicht verglichen"},
                 {"Hauptkonto", "88888"},
                 {"VS_KdNr", ""},
                 {"RG_KdNr", "99999"}});
  execute("Insert Into ImportKopf (JobID, JobType, Kundennummer) Values ('C1', 41, '70001')"_sql);
  execute("Insert Into ImportKopf (JobID, JobType, Kundennummer) Values ('C2', 42, '70001')"_sql);
  run(qxProcessState::ProcessKunden);
  EXPECT_EQ(outcomeOf("J1"), "12|Beim Verarbeiten wurden Warnungen festgestellt.\r\n"
                             "Kundengruppe: 'GX' ist nicht angelegt.\r\n"
                             "Vertreter1: 'V1X' ist nicht angelegt.\r\n"
                             "Zahlungsart: 'ZX' ist nicht angelegt.\r\n"
                             "ZahlungsbedSchl: 'BX' ist nicht angelegt.\r\n"
                             "Bankleitzahl: '99' ist nicht angelegt.\r\n"
                             "Bez2 ist nicht identisch: 'Neu' / 'Alt'\r\n"
                             "VS_Bez1 ist nicht identisch: 'Halle' / 'Lager'\r\n"
                             "Hauptkonto ist nicht angelegt\r\n"
                             "RG_KdNr ist nicht angelegt\r\n"
                             "Im Kundenvertrag wurden ''Warnungen'' festgestellt.\r\n"
                             "Im Kundenvertrag wurden ''Fehler'' festgestellt.\r\n");
}

TEST_F(CustomerJobs, TheCheckComparesOnlyWhatTheJobSpeaksOf) {
  erp.setOption("KundeAdressProof", "1");
  add("Kundenstamm", {{"Kundennummer", "70001"}, {"Bez1", "Alt"}, {"Strasse", "Kai 1"}, {"Ort", "Kiel"}});
  stageCustomer("J1", "70001");
  execute("Update ImportKopf Set Bez1 = Null, Strasse = '', PLZ = Null, Ort = 'Kiel'"_sql);
  EXPECT_EQ(engine.checkJob("J1").text(), "Strasse ist nicht identisch: '' / 'Kai 1'\r\n");
}

// Hints.

TEST_F(CustomerJobs, WhatAJobEmptiesAndCannotStoreIsAHintThatChangesNothing) {
  erp.setOption("AutomatischVerarbeiten", "1");
  add("Währungen", {{"Währung", "USD"}, {"Wechselkurs", 1.1}});
  add("Kundenstamm", {{"Kundennummer", "70001"},
                      {"Telefon", "040 1"},
                      {"Ort", "Kiel"},
                      {"Preisliste", "A"},
                      {"Preistyp", 1},
                      {"Provisionsgruppe", "p1"}});
  stageCustomer("J1", "70001",
                {{"Ort", ""},
                 {"Währung", "USD"},
                 {"Zahlungsweise", "M"},
                 {"Provisionsgruppe", "P1"},
                 {"Kreditinstitut", "Hafenbank"},
                 {"VS_Bez1", "Lager"}});
  const std::vector<std::string> expected{
      "Im Kundenstamm geleert: Telefon '040 1', Preisliste 'A', Preistyp '1'",
      "Nicht in den Kundenstamm übernommen: Währung 'USD', Zahlungsweise 'M', "
      "Kreditinstitut 'Hafenbank'",
      "Die Versandanschrift hat keine Adressnummer und wird nicht gespeichert."};
  const Findings findings = engine.checkJob("J1");
  EXPECT_EQ(findings.hints(), expected);
  EXPECT_EQ(findings.status(), CheckStatus::Clean);
  EXPECT_EQ(findings.text(), "");
  run();
  ASSERT_EQ(outcomes.size(), 1U);
  EXPECT_EQ(outcomes[0].findings.hints(), expected);
  EXPECT_EQ(outcomes[0].status, "Erledigt");
  EXPECT_EQ(reasons("J1"), "");
  EXPECT_EQ(text("Select Memo0 From Protokollpositionen"_sql),
            "Kunde geändert.\r\nBez1: Firma 70001\r\nBez2: \r\nBez3: \r\nHinweis: " + expected[0] +
                "\r\nHinweis: " + expected[1] + "\r\nHinweis: " + expected[2]);
}

TEST_F(CustomerJobs, AJobThatKeepsTheMasterOrSaysTheSameHasNoHint) {
  add("Kundenstamm",
      {{"Kundennummer", "70001"}, {"Telefon", "040 1"}, {"Währung", "CHF"}, {"ZahlungsbedSchl", "30"}});
  stageCustomer("J1", "70001",
                {{"Währung", "chf"},
                 {"ZahlungsbedSchl", "30"},
                 {"BLZ", "20000000"},
                 {"Kreditinstitut", "Hafenbank"},
                 {"Land", "FR"},
                 {"VS_AdrNr", "1"},
                 {"VS_Bez1", "Lager"}});
  execute("Update ImportKopf Set Telefon = Null"_sql);
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre());
}

TEST_F(CustomerJobs, ANewCustomerAbroadIsCreatedAsADomesticOneWithAHint) {
  const auto ofCountry = [&](const char* jobId, const char* country) {
    stageCustomer(jobId, jobId, {{"Land", country}});
    return engine.checkJob(jobId).hints();
  };
  EXPECT_THAT(ofCountry("J1", "FR"),
              ElementsAre("Neukunde im Land 'FR' mit dem Steuermerkmal des Inlands (MwSt_KZ 'IN')."));
  for (const char* home : {"", "d", "DE", "deutschland"})
    EXPECT_THAT(ofCountry((std::string("H") + home).c_str(), home), ElementsAre());
}

TEST_F(CustomerJobs, TaxFreeCustomersNeedATaxNumberAndNetPrices) {
  add("Kundenstamm", {{"Kundennummer", "70001"}, {"MwSt_KZ", "EU"}, {"Preistyp", 1}, {"Ort", "Lyon"}});
  const std::string noNumber = "Der Kunde ist steuerfrei (MwSt_KZ 'EU'), hat aber keine UstIdentNr.";
  const std::string gross = "Bruttopreise (Preistyp 1) bei einem Kunden, der nicht im Inland besteuert wird "
                            "(MwSt_KZ 'EU').";
  stageCustomer("J1", "70001");
  execute("Update ImportKopf Set Preistyp = Null"_sql);
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre(noNumber, gross));
  execute("Update ImportKopf Set UstIdentNr = 'FR1'"_sql);
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre(gross));
  execute("Update Kundenstamm Set MwSt_KZ = 'DR'"_sql);
  execute("Update ImportKopf Set UstIdentNr = Null"_sql);
  EXPECT_EQ(engine.checkJob("J1").hints().size(), 1U);
  execute("Update Kundenstamm Set MwSt_KZ = 'IN'"_sql);
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre());
}

TEST_F(CustomerJobs, TheCheckOfANewCustomerAcceptsItsOwnNumberAsAddress) {
  stageCustomer("J1", "70001", {{"VS_KdNr", "70001"}, {"RG_KdNr", "70001"}, {"RG_AdrNr", "7"}});
  const Findings findings = engine.checkJob("J1");
  EXPECT_EQ(findings.status(), CheckStatus::Error);
  EXPECT_EQ(findings.text(), "RG_KdNr ist nicht angelegt\r\n");
  EXPECT_EQ(jobType("J1"), 10);
  EXPECT_EQ(engine.checkJob("unbekannt").status(), CheckStatus::Clean);
}

TEST_F(CustomerJobs, AnAddressThatTheJobBringsAlongIsCreatedWhetherOrNotItNamesItsOwner) {
  erp.setOption("AutomatischVerarbeiten", "1");
  for (const char* number : {"70001", "70002"})
    stageCustomer(number, number,
                  {{"VS_KdNr", number == std::string_view("70001") ? number : ""},
                   {"VS_AdrNr", "2"},
                   {"VS_Bez1", "Halle"},
                   {"RG_KdNr", number},
                   {"RG_AdrNr", "3"},
                   {"RG_Strasse", "Kai 4"}});
  run();
  EXPECT_EQ(jobType("70001"), 13) << reasons("70001");
  EXPECT_EQ(jobType("70002"), 13) << reasons("70002");
  EXPECT_THAT(listed("Select Kundennummer, Adressnummer From Adressenstamm"_sql),
              ::testing::ElementsAre("70001|2", "70001|3", "70002|2", "70002|3"));
}

TEST_F(CustomerJobs, TheDayOfTheFirstContactIsWrittenWithoutTheTimeOfDay) {
  stageCustomer("J1", "70001",
                {{"KundeSeit", "3.1.2020 08:15:00"}, {"Eingangsdatum", "20.11.2026 09:30:00"}});
  run();
  EXPECT_EQ(customer("70001", "KundeSeit"), Value("03.01.2020"));
  EXPECT_EQ(text("Select Text3 From Protokollpositionen"_sql), "20.11.2026");
}

TEST_F(CustomerJobs, AwkwardTextsAreStoredAndComparedAsData) {
  const std::string awkward = "O'Brien'; DROP TABLE Kundenstamm; -- \"ä€😀\";" + std::string(10000, 'x');
  stageCustomer("J1", awkward, {{"Bez1", awkward}, {"Kundengruppe", awkward}});
  erp.setOption("KundenKundengruppe", "1");
  run();
  EXPECT_EQ(jobType("J1"), 13);
  EXPECT_EQ(customer(awkward, "Bez1"), Value(awkward));
  EXPECT_EQ(count("Select Count(*) From Kundengruppen Where Kundengruppe = '"_sql, value(awkward), "'"_sql),
            1);
}

} // namespace
} // namespace qx
