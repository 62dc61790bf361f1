// Customer jobs: what a run writes, creates and refuses.
#include "engine_fixture.h"

#include "erp/table_filler.h"

#include <gmock/gmock.h>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using CustomerJobs = EngineTest;

TEST_F(CustomerJobs, EveryMissingCodeIsReportedInOrderAndNothingIsWritten) {
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Kundengruppe = "GX";
    job.Vertreter1 = "";
    job.Vertreter2 = "V2";
    job.Vertreter3 = "V2";
    job.Zahlungsart = "ZX";
    job.Währung = "XYZ";
    job.BLZ = "99";
    job.Eingangsdatum = "31.02.2006";
  });
  run();
  EXPECT_EQ(jobType("J1"), 12);
  EXPECT_EQ(reasons("J1"),
            "Die Kundengruppe: 'GX' wurde noch nicht angelegt.\r\n"
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
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 0);
  EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Fehler"));
}

TEST_F(CustomerJobs, MissingCodesAreCreatedOnceWhenTheOptionsAllow) {
  for (const auto* option :
       {"KundenKundengruppe", "KundenVertreter", "KundenZahlungsart", "KundenBankleitzahl"})
    erp.setOption(option, "1");
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Kundengruppe = "GX";
    job.Vertreter1 = "V9";
    job.Vertreter2 = "V9";
    job.Zahlungsart = "ZX";
    job.BLZ = "99000000";
    job.Kreditinstitut = "Musterbank";
  });
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
  const std::string noGroup =
      "Die Kundengruppe: 'GX' wurde noch nicht angelegt.\r\n"
      "Um automatisch die Kundengruppe anzulegen, stellen Sie dies bitte in den Optionen ein.";
  const std::string noRep =
      "Der Vertreter: 'V9' wurde noch nicht angelegt.\r\n"
      "Um automatisch den Vertreter anzulegen, stellen Sie dies bitte in den Optionen ein.";
  const std::string noPayment =
      "Die Zahlungsart: 'ZX' wurde noch nicht angelegt.\r\n"
      "Um automatisch die Zahlungsart anzulegen, stellen Sie dies bitte in den Optionen ein.";
  const std::string noBank =
      "Die Bankleitzahl: '99000000' wurde noch nicht angelegt.\r\n"
      "Um automatisch die Bankleitzahl anzulegen, stellen Sie dies bitte in den Optionen ein.";
  const std::string next = "\r\n";
  struct Case {
    const char* on;
    std::string created; ///< rows of the code in groups, reps, payment methods and banks
    std::string reasons;
  };
  for (const Case& each : {Case{"", "0000", noGroup + next + noRep + next + noPayment + next + noBank},
                           {"KundenKundengruppe", "1000", noRep + next + noPayment + next + noBank},
                           {"KundenVertreter", "0100", noGroup + next + noPayment + next + noBank},
                           {"KundenZahlungsart", "0010", noGroup + next + noRep + next + noBank},
                           {"KundenBankleitzahl", "0001", noGroup + next + noRep + next + noPayment}}) {
    for (const char* option :
         {"KundenKundengruppe", "KundenVertreter", "KundenZahlungsart", "KundenBankleitzahl"})
      erp.setOption(option, std::string_view(option) == each.on ? "1" : "0");
    connection().execute(sql("Delete From ImportKopf"_sql));
    stageCustomer("J1", "70001", [](KundeFields& job) {
      job.Kundengruppe = "GX";
      job.Vertreter1 = "V9";
      job.Zahlungsart = "ZX";
      job.BLZ = "99000000";
    });
    run();
    EXPECT_EQ(jobType("J1"), 12) << each.on;
    EXPECT_EQ(reasons("J1"), each.reasons) << each.on;
    EXPECT_EQ(
        std::to_string(connection().execute(sql("Delete From Kundengruppen Where Kundengruppe = 'GX'"_sql))) +
            std::to_string(connection().execute(sql("Delete From Vertreter Where VertreterNr = 'V9'"_sql))) +
            std::to_string(
                connection().execute(sql("Delete From Zahlungsarten Where Zahlungsart = 'ZX'"_sql))) +
            std::to_string(
                connection().execute(sql("Delete From Kreditinstitute Where Bankleitzahl = '99000000'"_sql))),
        each.created)
        << each.on;
  }
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 0);
}

TEST_F(CustomerJobs, OnlyItsOwnOptionsLetARunCheckAndCompareAddresses) {
  stageCustomer("J0", "70001", [](KundeFields& job) { job.Strasse = "Kai 1"; });
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
    connection().execute(sql("Update Kundenstamm Set Strasse = 'Kai 1'"_sql));
    stageCustomer("J1", "70001", [](KundeFields& job) { job.Strasse = "Kai 2"; });
    run();
    EXPECT_EQ(jobType("J1"), each.jobType) << each.automatic << each.compare;
    EXPECT_EQ(customer("70001", "Strasse"), Value(each.jobType == 13 ? "Kai 2" : "Kai 1"));
    connection().execute(sql("Delete From ImportKopf"_sql));
  }
}

TEST_F(CustomerJobs, CodesThatWereCreatedStayWhenALaterCheckFailsTheJob) {
  erp.setOption("KundenKundengruppe", "1");
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Kundengruppe = "GX";
    job.Zahlungsart = "ZX";
  });
  run();
  EXPECT_EQ(jobType("J1"), 12);
  EXPECT_EQ(count(sql("Select Count(*) From Kundengruppen Where Kundengruppe = 'GX'"_sql)), 1);
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 0);
}

TEST_F(CustomerJobs, AJobWithoutANumberIsRefused) {
  stageCustomer("J1", "");
  run();
  EXPECT_EQ(jobType("J1"), 12);
  EXPECT_EQ(reasons("J1"), "Die Kundennummer fehlt.");
}

TEST_F(CustomerJobs, TwoJobsOfOneNumberCreateAndThenChange) {
  stageCustomer("J1", "70001");
  stageCustomer("J2", "70001", [](KundeFields& job) { job.Bez1 = "Zweite"; });
  run();
  EXPECT_EQ(customer("70001", "Bez1"), Value("Zweite"));
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 1);
  const auto infos = connection().open(sql("Select Memo0 From Protokollpositionen"_sql));
  EXPECT_THAT(infos->text("Memo0"), HasSubstr("Neukunde angelegt."));
  infos->moveNext();
  EXPECT_THAT(infos->text("Memo0"), HasSubstr("Kunde geändert."));
}

TEST_F(CustomerJobs, FurtherAddressesAreAddedOnceAndNeverOverwritten) {
  const auto withAddress = [](KundeFields& job) {
    job.VS_AdrNr = "2";
    job.VS_Bez1 = "Lager";
    job.VS_Ort = "Kiel";
    job.RG_AdrNr = "3";
  };
  stageCustomer("J1", "70001", withAddress);
  run();
  stageCustomer("J2", "70001", [&](KundeFields& job) {
    withAddress(job);
    job.VS_Ort = "Lübeck";
  });
  run();
  const auto addresses =
      connection().open(sql("Select * From Adressenstamm Where Kundennummer = '70001'"_sql));
  ASSERT_EQ(addresses->recordCount(), 1U) << "a number without any text adds no address";
  EXPECT_EQ(addresses->text("Ort"), "Kiel");
  EXPECT_TRUE(addresses->value("Strasse").isNull());
}

TEST_F(CustomerJobs, ARefusedAddressLeavesNoCustomerBehind) {
  refuse("INSERT ON Adressenstamm"_sql, "'Adresse gesperrt'"_sql);
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.VS_AdrNr = "2";
    job.VS_Bez1 = "Lager";
  });
  EXPECT_TRUE(run());
  EXPECT_EQ(jobType("J1"), 12);
  EXPECT_EQ(reasons("J1"), "Adresse gesperrt");
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 0);
}

TEST_F(CustomerJobs, OnAHostsConnectionAFailureTakesBackWhatStoodAlready) {
  erp::TableFiller(connection(), "Kundenstamm")
      .add({{"Kundennummer", "70001"}, {"Bez1", "Alt"}, {"Telefon", "1"}, {"ÄndUser", "Anna"}});
  erp::TableFiller(connection(), "Adressenstamm").add({{"Kundennummer", "70001"}, {"Adressnummer", "2"}});
  refuse("INSERT ON Adressenstamm WHEN new.Adressnummer = '3'"_sql, "'Adresse gesperrt'"_sql);
  refuse("UPDATE ON ImportKopf WHEN new.JobID = 'DONE' And new.JobType = 13"_sql, "'nie fertig'"_sql);
  const auto withAddresses = [](const char* last) {
    return [last](KundeFields& job) {
      job.VS_AdrNr = "2";
      job.VS_Bez1 = "Lager";
      job.RG_AdrNr = last;
      job.RG_Bez1 = "Büro";
    };
  };
  stageCustomer("OLD", "70001", withAddresses("3"));
  stageCustomer("NEW", "70002", withAddresses("3"));
  stageCustomer("DONE", "70003", withAddresses("4"));
  becomeHost();
  EXPECT_TRUE(run());
  EXPECT_EQ(reasons("OLD") + "|" + reasons("NEW") + "|" + reasons("DONE"),
            "Adresse gesperrt|Adresse gesperrt|nie fertig");
  EXPECT_EQ(count(sql("Select Count(*) From ImportKopf Where JobType = 12"_sql)), 3);
  EXPECT_EQ(erp.text(sql("Select Group_Concat(Kundennummer || ' ' || Bez1 || ' ' || Telefon || ' ' || "
                         "ÄndUser || ' ' || Coalesce(ÄndDatum, '-') || Coalesce(PLZ, '-')) From "
                         "Kundenstamm"_sql)),
            "70001 Alt 1 Anna --");
  EXPECT_EQ(erp.text(sql("Select Group_Concat(Kundennummer || ' ' || Adressnummer) From Adressenstamm"_sql)),
            "70001 2");
}

TEST_F(CustomerJobs, AFailedCustomersIndexIsBroughtUpToDateWhateverTheFailureCameFrom) {
  refuse("INSERT ON Kundenstamm"_sql, "'Kunde gesperrt'"_sql);
  for (const char* number : {"70001", "70002"})
    connection().execute(
        sql("Insert Into Adressindex (Kundennummer, Art) Values ('"_sql, value(number), "', 1)"_sql));
  stageCustomer("REFUSED", "70001");
  stageCustomer("SENTENCE", "70002", [](KundeFields& job) { job.Währung = "XXX"; });
  run();
  EXPECT_EQ(reasons("REFUSED") + "|" + reasons("SENTENCE"),
            "Kunde gesperrt|Die Währung: 'XXX' ist nicht angelegt.");
  EXPECT_EQ(count(sql("Select Count(*) From Adressindex"_sql)), 0);
}

// The automatic check.

TEST_F(CustomerJobs, InAutomaticModeFindingsParkTheJobUntilItIsReleased) {
  erp.setOption("AutomatischVerarbeiten", "1");
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Versandart = "SX";
    job.Fehlertext = "alter Text";
  });
  run();
  EXPECT_EQ(jobType("J1"), 11);
  EXPECT_EQ(reasons("J1"),
            "Beim Verarbeiten wurden Warnungen festgestellt.\r\nVersandart: 'SX' ist nicht angelegt.\r\n");
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 0);
  EXPECT_EQ(count(sql("Select Count(*) From Adressindex"_sql)), 0);
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
  stageCustomer("J1", "70001", [](KundeFields& job) { job.Versandart = "SX"; });
  run(qxProcessState::ProcessAll, true);
  EXPECT_EQ(jobType("J1"), 13);
}

TEST_F(CustomerJobs, TheCheckListsItsFindingsInOrderAndTakesTheWorst) {
  stageCustomer("J0", "70001", [](KundeFields& job) {
    job.Bez2 = "Alt";
    job.VS_AdrNr = "2";
    job.VS_Bez1 = "Lager";
  });
  run();
  erp.setOption("AutomatischVerarbeiten", "1");
  erp.setOption("KundeAdressProof", "1");
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Bez2 = "Neu";
    job.Kundengruppe = "GX";
    job.Vertreter1 = "V1X";
    job.Vertreter2 = "V2X";
    job.Zahlungsart = "ZX";
    job.ZahlungsbedSchl = "BX";
    job.BLZ = "99";
    job.VS_AdrNr = "2";
    job.VS_Bez1 = "Halle";
    job.VS_Strasse = "nicht verglichen";
    job.Hauptkonto = "88888";
    job.VS_KdNr = "";
    job.RG_KdNr = "99999";
  });
  connection().execute(
      sql("Insert Into ImportKopf (JobID, JobType, Kundennummer) Values ('C1', 41, '70001')"_sql));
  connection().execute(
      sql("Insert Into ImportKopf (JobID, JobType, Kundennummer) Values ('C2', 42, '70001')"_sql));
  run(qxProcessState::ProcessKunden);
  EXPECT_EQ(jobType("J1"), 12);
  EXPECT_EQ(reasons("J1"), "Beim Verarbeiten wurden Warnungen festgestellt.\r\n"
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
  erp::TableFiller(connection(), "Kundenstamm")
      .add({{"Kundennummer", "70001"}, {"Bez1", "Alt"}, {"Strasse", "Kai 1"}, {"Ort", "Kiel"}});
  stageCustomer("J1", "70001");
  connection().execute(sql("Update ImportKopf Set Bez1 = Null, Strasse = '', PLZ = Null, Ort = 'Kiel'"_sql));
  EXPECT_EQ(engine.checkJob("J1").text(), "Strasse ist nicht identisch: '' / 'Kai 1'\r\n");
}

// Hints.

TEST_F(CustomerJobs, WhatAJobEmptiesAndCannotStoreIsAHintThatChangesNothing) {
  erp.setOption("AutomatischVerarbeiten", "1");
  erp::TableFiller(connection(), "Währungen").add({{"Währung", "USD"}, {"Wechselkurs", 1.1}});
  erp::TableFiller(connection(), "Kundenstamm")
      .add({{"Kundennummer", "70001"},
            {"Telefon", "040 1"},
            {"Ort", "Kiel"},
            {"Preisliste", "A"},
            {"Preistyp", 1},
            {"Provisionsgruppe", "p1"}});
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Ort = "";
    job.Währung = "USD";
    job.Zahlungsweise = "M";
    job.Provisionsgruppe = "P1";
    job.Kreditinstitut = "Hafenbank";
    job.VS_Bez1 = "Lager";
  });
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
  EXPECT_EQ(erp.text(sql("Select Memo0 From Protokollpositionen"_sql)),
            "Kunde geändert.\r\nBez1: Firma 70001\r\nBez2: \r\nBez3: \r\nHinweis: " + expected[0] +
                "\r\nHinweis: " + expected[1] + "\r\nHinweis: " + expected[2]);
}

TEST_F(CustomerJobs, AJobThatKeepsTheMasterOrSaysTheSameHasNoHint) {
  erp::TableFiller(connection(), "Kundenstamm")
      .add({{"Kundennummer", "70001"}, {"Telefon", "040 1"}, {"Währung", "CHF"}, {"ZahlungsbedSchl", "30"}});
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.Währung = "chf";
    job.ZahlungsbedSchl = "30";
    job.BLZ = "20000000";
    job.Kreditinstitut = "Hafenbank";
    job.Land = "FR";
    job.VS_AdrNr = "1";
    job.VS_Bez1 = "Lager";
  });
  connection().execute(sql("Update ImportKopf Set Telefon = Null"_sql));
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre());
}

TEST_F(CustomerJobs, ANewCustomerAbroadIsCreatedAsADomesticOneWithAHint) {
  const auto ofCountry = [&](const char* jobId, const char* country) {
    stageCustomer(jobId, jobId, [&](KundeFields& job) { job.Land = country; });
    return engine.checkJob(jobId).hints();
  };
  EXPECT_THAT(ofCountry("J1", "FR"),
              ElementsAre("Neukunde im Land 'FR' mit dem Steuermerkmal des Inlands (MwSt_KZ 'IN')."));
  for (const char* home : {"", "d", "DE", "deutschland"})
    EXPECT_THAT(ofCountry((std::string("H") + home).c_str(), home), ElementsAre());
}

TEST_F(CustomerJobs, TaxFreeCustomersNeedATaxNumberAndNetPrices) {
  erp::TableFiller(connection(), "Kundenstamm")
      .add({{"Kundennummer", "70001"}, {"MwSt_KZ", "EU"}, {"Preistyp", 1}, {"Ort", "Lyon"}});
  const std::string noNumber = "Der Kunde ist steuerfrei (MwSt_KZ 'EU'), hat aber keine UstIdentNr.";
  const std::string gross = "Bruttopreise (Preistyp 1) bei einem Kunden, der nicht im Inland besteuert wird "
                            "(MwSt_KZ 'EU').";
  stageCustomer("J1", "70001");
  connection().execute(sql("Update ImportKopf Set Preistyp = Null"_sql));
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre(noNumber, gross));
  connection().execute(sql("Update ImportKopf Set UstIdentNr = 'FR1'"_sql));
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre(gross));
  connection().execute(sql("Update Kundenstamm Set MwSt_KZ = 'DR'"_sql));
  connection().execute(sql("Update ImportKopf Set UstIdentNr = Null"_sql));
  EXPECT_EQ(engine.checkJob("J1").hints().size(), 1U);
  connection().execute(sql("Update Kundenstamm Set MwSt_KZ = 'IN'"_sql));
  EXPECT_THAT(engine.checkJob("J1").hints(), ElementsAre());
}

TEST_F(CustomerJobs, TheCheckOfANewCustomerAcceptsItsOwnNumberAsAddress) {
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.VS_KdNr = "70001";
    job.RG_KdNr = "70001";
    job.RG_AdrNr = "7";
  });
  const Findings findings = engine.checkJob("J1");
  EXPECT_EQ(findings.status(), CheckStatus::Error);
  EXPECT_EQ(findings.text(), "RG_KdNr ist nicht angelegt\r\n");
  EXPECT_EQ(jobType("J1"), 10);
  EXPECT_EQ(engine.checkJob("unbekannt").status(), CheckStatus::Clean);
}

TEST_F(CustomerJobs, AnAddressThatTheJobBringsAlongIsCreatedWhetherOrNotItNamesItsOwner) {
  erp.setOption("AutomatischVerarbeiten", "1");
  for (const char* number : {"70001", "70002"})
    stageCustomer(number, number, [number](KundeFields& job) {
      job.VS_KdNr = job.Kundennummer == "70001" ? number : "";
      job.VS_AdrNr = "2";
      job.VS_Bez1 = "Halle";
      job.RG_KdNr = number;
      job.RG_AdrNr = "3";
      job.RG_Strasse = "Kai 4";
    });
  run();
  EXPECT_EQ(jobType("70001"), 13) << reasons("70001");
  EXPECT_EQ(jobType("70002"), 13) << reasons("70002");
  EXPECT_EQ(erp.text(sql("Select Group_Concat(Kundennummer || ' ' || Adressnummer) From Adressenstamm"_sql)),
            "70001 2,70001 3,70002 2,70002 3");
}

TEST_F(CustomerJobs, TheDayOfTheFirstContactIsWrittenWithoutTheTimeOfDay) {
  stageCustomer("J1", "70001", [](KundeFields& job) {
    job.KundeSeit = "3.1.2020 08:15:00";
    job.Eingangsdatum = "20.11.2026 09:30:00";
  });
  run();
  EXPECT_EQ(customer("70001", "KundeSeit"), Value("03.01.2020"));
  EXPECT_EQ(erp.text(sql("Select Text3 From Protokollpositionen"_sql)), "20.11.2026");
}

TEST_F(CustomerJobs, AwkwardTextsAreStoredAndComparedAsData) {
  const std::string awkward = "O'Brien'; DROP TABLE Kundenstamm; -- \"ä€😀\";" + std::string(10000, 'x');
  stageCustomer("J1", awkward, [&](KundeFields& job) {
    job.Bez1 = awkward;
    job.Kundengruppe = awkward;
  });
  erp.setOption("KundenKundengruppe", "1");
  run();
  EXPECT_EQ(jobType("J1"), 13);
  EXPECT_EQ(customer(awkward, "Bez1"), Value(awkward));
  EXPECT_EQ(
      count(sql("Select Count(*) From Kundengruppen Where Kundengruppe = '"_sql, value(awkward), "'"_sql)),
      1);
}

} // namespace
} // namespace qx
