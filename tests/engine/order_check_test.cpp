// The check of orders: its findings, their order, and what they stop.
#include "order_fixture.h"

#include "support/fake_session.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>

namespace qx {
namespace {

class OrderCheckTest : public OrderTest {};

TEST_F(OrderCheckTest, FindingsComeInTheOrderOfTheSteps) {
  customerSpecific();
  erp.setOption("ZAVSRG", "VK");
  erp.setOption("ZAKunde", "ZK");
  erp.setOption("VAKunde", "VA");
  erp.setOption("KostenzuordnungAuftrag", "1");
  erp.setOption("WarnungLagerbestand", "1");
  erp.setSetting("Kostenzuordnung", "Kundenauftrag", "3");
  add("Artikellager",
      {{"Artikelnummer", "A100"}, {"Lagernummer", "1"}, {"Lagerbestand", 5.0}, {"MitBestand", true}});
  stageOrder("O1", {{"Bemerkung", "Notiz"},
                    {"Vertreter1", "XX"},
                    {"Versandart", "XX"},
                    {"Zahlungsart", "XX"},
                    {"IndFild1", "ZB"},
                    {"IndFild3", "ZA"},
                    {"ZahlungsbedSchl", "XX"},
                    {"BLZ", "1"},
                    {"VS_KdNr", "88888"},
                    {"RG_AdrNr", "5"},
                    {"Hauptkonto", "88888"}});
  execute("Update ImportKopf Set IndFild4 = 'MK' Where JobID = 'O1'"_sql);
  stagePosition("O1", 1, "A100", 6, {{"Preis", 10.001}});
  stagePosition("O1", 2, "A999", 1);
  const Findings findings = engine.checkJob("O1");
  EXPECT_EQ(findings.status(), CheckStatus::Error);
  EXPECT_EQ(findings.text(),
            "Achtung es ist eine Notiz hinterlegt.\r\nVertreter1\r\nVersandart\r\nZahlungsart\r\n"
            "Ind_Field ZB\r\nIndField3 ZA\r\nInd_Field MK\r\nZahlungsbedSchl\r\nBankverbindung\r\n"
            "VS_KdNr\r\nRG_KdNr\r\nHauptkonto\r\nVersandanschrift nicht angelegt\r\n"
            "Rechnungsanschrift nicht angelegt\r\n"
            "Preis ist nicht identisch\r\nKostenzuordnung\r\nLagerbestand\r\n"
            "Preis nicht gefunden\r\nKostenzuordnung\r\nArtikel ist nicht angelegt\r\n");
  EXPECT_EQ(reasons("O1"), "") << "a check writes nothing";
}

TEST_F(OrderCheckTest, AnUnknownAddressBreaksTheTwoRulesOfItsOwnBlock) {
  stageOrder("OV", {{"VS_AdrNr", "5"}});
  stagePosition("OV", 1, "A100", 1);
  stageOrder("OR", {{"RG_KdNr", "88888"}});
  stagePosition("OR", 1, "A100", 1);
  EXPECT_EQ(engine.checkJob("OV").text(), "VS_KdNr\r\nVersandanschrift nicht angelegt\r\n");
  EXPECT_EQ(engine.checkJob("OR").text(), "RG_KdNr\r\nRechnungsanschrift nicht angelegt\r\n");
}

TEST_F(OrderCheckTest, EmptyCodesAndKeysAreNoFindings) {
  stageOrderOf("O1");
  const Findings findings = engine.checkJob("O1");
  EXPECT_EQ(findings.status(), CheckStatus::Clean) << findings.text();
}

TEST_F(OrderCheckTest, CurrencyAndTaxThatTheSenderMayNotExpectAreHints) {
  stageOrder("O1", {{"Währung", "USD"}});
  stagePosition("O1", 1, "A100", 1);
  execute("Update Kundenstamm Set Währung = 'CHF', MwSt_KZ = 'EU', Preistyp = 1"_sql);
  const std::vector<std::string> expected{
      "Die Währung 'USD' des Auftrags gilt nicht, der Kunde hat 'CHF'.",
      "Zur Währung 'CHF' ist kein Wechselkurs angelegt.",
      "Der Kunde ist steuerfrei (MwSt_KZ 'EU'), hat aber keine UstIdentNr.",
      "Bruttopreise (Preistyp 1) bei einem Kunden, der nicht im Inland besteuert wird (MwSt_KZ 'EU')."};
  const Findings findings = engine.checkJob("O1");
  EXPECT_EQ(findings.hints(), expected);
  EXPECT_EQ(findings.status(), CheckStatus::Clean);
  run();
  ASSERT_EQ(outcomes.size(), 1U);
  EXPECT_EQ(outcomes[0].findings.hints(), expected);
  EXPECT_EQ(reasons("O1"), "");
  EXPECT_EQ(
      text("Select Memo0 From Protokollpositionen"_sql),
      "Kundennummer: 20001\r\nKunde: Hafenbau GmbH\r\nEingangsdatum: " + field("O1", "Eingangsdatum").text() +
          "\r\nHinweis: " + expected[0] + "\r\nHinweis: " + expected[1] + "\r\nHinweis: " + expected[2] +
          "\r\nHinweis: " + expected[3]);
}

TEST_F(OrderCheckTest, AnOrderInTheHomeCurrencyOrInAnotherWithARateHasNoHint) {
  add("Währungen", {{"Währung", "CHF"}, {"Wechselkurs", 0.95}});
  execute("Delete From Währungen Where Währung = 'EUR'"_sql);
  stageOrder("O1", {{"Währung", "eur"}});
  EXPECT_EQ(engine.checkJob("O1").hints(), std::vector<std::string>());
  execute("Update Kundenstamm Set Währung = 'CHF', MwSt_KZ = 'EU', UstIdentNr = 'CH1'"_sql);
  execute("Update ImportKopf Set Währung = 'CHF'"_sql);
  EXPECT_EQ(engine.checkJob("O1").hints(), std::vector<std::string>());
  execute("Update ImportKopf Set Kundennummer = '88888'"_sql);
  EXPECT_EQ(engine.checkJob("O1").hints(), std::vector<std::string>());
}

TEST_F(OrderCheckTest, AStagedTextRaisesTheStatusWithoutAToken) {
  stageOrder("O1", {{"Fehlertext", "vom Shop"}});
  stagePosition("O1", 1, "A100", 1);
  const Findings findings = engine.checkJob("O1");
  EXPECT_EQ(findings.status(), CheckStatus::Warning);
  EXPECT_EQ(findings.text(), "");
}

TEST_F(OrderCheckTest, PricesAreComparedExactlyAndOnlyInTheInstallationsOwnMode) {
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 1, {{"Preis", 10.001}});
  EXPECT_EQ(engine.checkJob("O1").status(), CheckStatus::Clean);
  customerSpecific();
  EXPECT_EQ(engine.checkJob("O1").text(), "Preis ist nicht identisch\r\n");
}

TEST_F(OrderCheckTest, AFailingPriceAndMissingPositionsAreErrors) {
  stageOrderOf("O1", "G400");
  EXPECT_EQ(engine.checkJob("O1").text(), "PLU Fehler\r\n");
  EXPECT_EQ(engine.checkJob("O1").status(), CheckStatus::Error);
  stageOrder("O2", {{"Kundennummer", "99"}});
  EXPECT_EQ(engine.checkJob("O2").text(), "Kunde nicht angelegt\r\nAuftrag ohne Positionen angelegt.\r\n");
}

TEST_F(OrderCheckTest, AStockOfSeveralStoresIsComparedWithoutItsBinaryRemainder) {
  erp.setOption("WarnungLagerbestand", "1");
  for (const auto& [store, stock] : {std::pair{"1", 0.7}, {"2", 0.1}})
    add("Artikellager",
        {{"Artikelnummer", "B200"}, {"Lagernummer", store}, {"Lagerbestand", stock}, {"MitBestand", true}});
  add("Verkaufspreise",
      {{"Artikelnummer", "B200"}, {"Preis", 4.99}, {"Preisliste", ""}, {"Kundennummer", ""}});
  stageOrder("O1");
  stagePosition("O1", 1, "B200", 0.8);
  EXPECT_EQ(engine.checkJob("O1").text(), "");
  stageOrder("O2");
  stagePosition("O2", 1, "B200", 0.81);
  EXPECT_EQ(engine.checkJob("O2").text(), "Lagerbestand\r\n");
}

TEST_F(OrderCheckTest, StockIsComparedInTheUnitOfTheOrder) {
  erp.setOption("WarnungLagerbestand", "1");
  add("Artikellager",
      {{"Artikelnummer", "A100"}, {"Lagernummer", "1"}, {"Lagerbestand", 24.0}, {"MitBestand", true}});
  add("Mengeneinheiten", {{"Mengeneinheit", "KAR"}});
  add("MengeneinheitenAltern", {{"Alternativ", "Karton"}, {"Mengeneinheit", "KAR"}});
  add("Umrechnungen",
      {{"Artikelnummer", "A100"}, {"Mengeneinheit", "KAR"}, {"Basiseinheit", "ST"}, {"Faktor", 12.0}});
  struct Case {
    double quantity;
    const char* unit;
    bool warned;
  };
  int number = 0;
  for (const Case& each : {Case{2, "Karton", false},
                           {3, "KAR", true},
                           {24, "", false},
                           {25, "ST", true},
                           {1000, "PAL", false}}) {
    const std::string key = "O" + std::to_string(++number);
    stageOrder(key);
    stagePosition(key, 1, "A100", each.quantity, {{"Mengeneinheit", each.unit}});
    const std::string found = engine.checkJob(key).text();
    EXPECT_EQ(found.find("Lagerbestand") != std::string::npos, each.warned) << each.quantity << each.unit;
  }
  EXPECT_FALSE(erp.diagnostics.entries.empty()) << "a unit without conversion is told, not found";
}

/// Raises what a test wants.
class RaisingConversions final : public Umrechnungen {
public:
  double GetUmrechnung(const UnitConversion& /*conversion*/) override {
    raise();
    return 1;
  }
  std::function<void()> raise;
};

TEST_F(OrderCheckTest, OnlyAMissingConversionIsNoFindingOfTheStock) {
  add("Artikellager",
      {{"Artikelnummer", "A100"}, {"Lagernummer", "1"}, {"Lagerbestand", 24.0}, {"MitBestand", true}});
  RaisingConversions conversions;
  const auto session = std::make_shared<FixedSession>();
  session->conversions = &conversions;
  session->settings[{"ImportJob2", "WarnungLagerbestand"}] = "1";
  erp.environment.session = session;
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 1, {{"Mengeneinheit", "PAL"}});

  conversions.raise = [] { throw std::bad_alloc(); };
  run();
  EXPECT_EQ(engine.lastRun().end, RunEnd::Broken);
  EXPECT_EQ(jobType("O1"), 30) << "a lack of memory is no failure of the job";
  conversions.raise = [] { throw StoreError("Platte voll", 0); };
  run();
  EXPECT_EQ(engine.lastRun().failure, "Platte voll");
  EXPECT_EQ(jobType("O1"), 30);
  conversions.raise = [] { throw std::runtime_error("keine Umrechnung"); };
  run();
  EXPECT_EQ(reasons("O1"), "Es konnte keine Auftragsnummer ermittelt werden.") << "the check let it pass";
  conversions.raise = [] { throw std::logic_error("Fehler im Programm"); };
  release("O1");
  run();
  EXPECT_EQ(reasons("O1"), "Fehler im Programm");
}

TEST_F(OrderCheckTest, CreditLimitsCountWhenTheyAreReached) {
  erp.setOption("KreditlimitAuftrag", "1");
  add("OffenePosten", {{"Kundennummer", "20001"},
                       {"Belegnummer", "1"},
                       {"Betrag", *Money::parse("500")},
                       {"Währung", "EUR"}});
  stageOrderOf("O1");
  const auto checked = [&](const char* first, const char* second) {
    execute("Update Kundenstamm Set Kreditlimit1 = '"_sql, nullable(first), "', Kreditlimit2 = '"_sql,
            nullable(second), "'"_sql);
    return engine.checkJob("O1").text();
  };
  EXPECT_EQ(checked("500", "0"), "Kreditlimit 1 ist überschritten (Warnhinweis)\r\n");
  EXPECT_EQ(checked("500.01", "0"), "");
  EXPECT_EQ(checked("0", "500"), "Kreditlimit 2 ist überschritten (Auftragssperre)\r\n");
  EXPECT_EQ(checked("100", "400"), "Kreditlimit 2 ist überschritten (Auftragssperre)\r\n");
  EXPECT_EQ(checked("0", "0"), "");
  erp.setSetting("OP-Info", "Kreditlimit1", "450");
  EXPECT_EQ(checked("", "0"), "Kreditlimit 1 ist überschritten (Warnhinweis)\r\n");
  erp.setSetting("OP-Info", "Kreditlimit1", "1.000");
  EXPECT_EQ(checked("", "0"), "Der Vorgang konnte nicht geprüft werden: Das Kreditlimit '1.000' ist nicht "
                              "eindeutig: 1000 oder 1.\r\n");
  EXPECT_EQ(checked("501", "0"), "") << "with a limit of their own";
  add("Währungen", {{"Währung", "USD"}, {"Wechselkurs", 1.25}});
  execute("Update Kundenstamm Set Währung = 'USD'"_sql);
  // 625 USD are 500 EUR.
  EXPECT_EQ(checked("625", "0"), "Kreditlimit 1 ist überschritten (Warnhinweis)\r\n");
  EXPECT_EQ(checked("626", "0"), "");
}

TEST_F(OrderCheckTest, AConvertedCreditLimitIsReachedExactly) {
  erp.setOption("KreditlimitAuftrag", "1");
  add("Währungen", {{"Währung", "USD"}, {"Wechselkurs", 1.1}});
  add("OffenePosten", {{"Kundennummer", "20001"},
                       {"Belegnummer", "1"},
                       {"Betrag", *Money::parse("110")},
                       {"Währung", "USD"}});
  // In double numbers 100 EUR are 110.00000000000001 USD.
  execute("Update Kundenstamm Set Kreditlimit2 = 100, Währung = 'EUR'"_sql);
  stageOrderOf("O1");
  EXPECT_EQ(engine.checkJob("O1").text(), "Kreditlimit 2 ist überschritten (Auftragssperre)\r\n");
  execute("Update Kundenstamm Set Kreditlimit2 = 100.0001"_sql);
  EXPECT_EQ(engine.checkJob("O1").text(), "");
}

TEST_F(OrderCheckTest, ACostAssignmentThatDoesNotFitIsFoundMissing) {
  erp.setOption("KostenzuordnungAuftrag", "1");
  erp.setSetting("Kostenzuordnung", "Kundenauftrag", "1");
  add("Kostenzuordnung", {{"KostID", 1}, {"Kostenstelle", "S1"}});
  stageOrderOf("O1");
  execute("Update ImportPos Set KostID = 4294967297"_sql);
  EXPECT_EQ(engine.checkJob("O1").text(), "Kostenzuordnung\r\n");
  execute("Update ImportPos Set KostID = 1"_sql);
  EXPECT_EQ(engine.checkJob("O1").text(), "");
}

TEST_F(OrderCheckTest, AutomaticModeParksAndARereleasedOrderIsWritten) {
  erp.setOption("AutomatischVerarbeiten", "1");
  stageOrder("W", {{"Hauptkonto", "8"}});
  stagePosition("W", 1, "A100", 1);
  stageOrder("E");
  run();
  EXPECT_EQ(outcomeOf("W"), "31|Beim Verarbeiten wurden Warnungen festgestellt.\r\nHauptkonto\r\n");
  EXPECT_EQ(jobType("E"), 32);
  EXPECT_EQ(orders(), 0);
  release("W");
  run();
  EXPECT_EQ(outcomeOf("W"), "33|Beim Verarbeiten wurden Warnungen festgestellt.\r\nHauptkonto\r\n");
  EXPECT_EQ(protocolLines(), 3);
}

TEST_F(OrderCheckTest, WithoutAutomaticModeWarningsAreWrittenAndErrorsAreNot) {
  stageOrder("W", {{"Fehlertext", "vom Shop"}});
  stagePosition("W", 1, "A100", 1);
  stageOrder("E", {{"VS_KdNr", "88888"}});
  stagePosition("E", 1, "A100", 1);
  run();
  EXPECT_EQ(outcomeOf("W"), "33|vom Shop\r\nBeim Verarbeiten wurden Warnungen festgestellt.\r\n");
  EXPECT_EQ(jobType("E"), 32);
  release("E");
  run();
  EXPECT_EQ(jobType("E"), 33) << "the clerk's release goes before the check's errors";
}

} // namespace
} // namespace qx
