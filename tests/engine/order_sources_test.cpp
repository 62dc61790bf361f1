// Where an order takes its number, its tax key and each of its columns from.
#include "order_fixture.h"

#include "erp/schema.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace qx {
namespace {

using ::testing::ElementsAre;

class OrderSources : public OrderTest {
protected:
  void stagePlain(std::string_view jobId, const Properties& given = {}) {
    stageOrder(jobId, given);
    stagePosition(jobId, 1, "A100", 1);
  }
  /// The orders' values of a column in the order of writing.
  std::vector<std::string> headers(ColumnName column) {
    std::vector<std::string> values;
    for (const auto rows = order(); !rows->eof(); rows->moveNext()) values.push_back(rows->text(column));
    return values;
  }
  void addRange(int circle, int drawn) {
    add("Nummernkreise",
        {{"NSchl", "AB"}, {"Buchungskreis", circle}, {"Aktiviert", true}, {"aktuellerWert", drawn}});
  }
};

TEST_F(OrderSources, TheBookingCircleIsAskedOnceOrForEachOrder) {
  addRange(2, 500);
  add("Benutzer", {{"UserName", "pruefer"}, {"Buchungskreis", 1}});
  // The user moves to another circle while the run is under way.
  follow("INSERT ON Belegindex"_sql, "Update Benutzer Set Buchungskreis = 2"_sql);
  stagePlain("O1");
  stagePlain("O2");
  run();
  EXPECT_THAT(headers("Auftragsnummer"), ElementsAre("1", "2"));

  erp.setSetting("Buchungskreise", "OnNewAB", "1");
  execute("Update Benutzer Set Buchungskreis = 1"_sql);
  stagePlain("O3");
  stagePlain("O4");
  run();
  EXPECT_THAT(headers("Auftragsnummer"), ElementsAre("1", "2", "3", "501"));
  EXPECT_THAT(headers("Buchungskreis"), ElementsAre("1", "1", "1", "2"));
}

TEST_F(OrderSources, WithoutACurrencySettingMarksAreTheHomeCurrency) {
  execute("Delete From Einstellungen Where [Key] = 'Landeswährung'"_sql);
  stagePlain("O1");
  EXPECT_TRUE(ImportJobObject2(erp.environment).ProcessJobs());
  EXPECT_EQ(order()->text("Währung"), "DM");
}

TEST_F(OrderSources, AMarkedOrderOfTheCollectingCustomerHasTheCircleOfItsRep) {
  addRange(2, 500);
  add("Vertreter", {{"VertreterNr", "2"}, {"Bez1", "See"}});
  for (const char* number : {"14999", "1499900"})
    add("Kundenstamm", {{"Kundennummer", number}, {"Preisliste", "A"}});
  const auto ofRep = [](const char* customer, const char* mark) {
    return Properties{{"Kundennummer", customer}, {"IndFild1", mark}, {"Vertreter1", "2"}};
  };
  stagePlain("O1", ofRep("14999", "ZB"));
  stagePlain("O2", ofRep("14999", "zb"));
  stagePlain("O3", ofRep("1499900", "ZB"));
  stagePlain("O4", ofRep("20001", "ZB"));
  run();
  EXPECT_THAT(headers("Auftragsnummer"), ::testing::UnorderedElementsAre("501", "1", "502", "2"));
}

TEST_F(OrderSources, TheDateOfReceiptDecidesTheTaxKey) {
  add("Steuerschlüssel", {{"Steuerschlüssel", 4}, {"MwSt_Satz", 21.0}});
  execute("Update Steuerschlüsselzuordnung Set SteuerschlüsselNeu = 4 Where MwStKZArtikel = 'V'"_sql);
  execute("Update Kundenstamm Set Auftragsrabatt = 0"_sql);
  erp.setSetting("Allgemein", "DatumMwStÄnderung", "20270101000000");
  // What is changed while the run is under way is for the next one.
  follow("INSERT ON Belegindex"_sql, "Update Einstellungen Set Value = '' Where Section = 'Allgemein'"_sql);
  stagePlain("O1", {{"Eingangsdatum", "31.12.2026"}});
  stagePlain("O2", {{"Eingangsdatum", "1.1.2027"}});
  run();
  // 10.00 with 19 % and with 21 %.
  EXPECT_THAT(headers("Gesamtbrutto"), ElementsAre("11.9", "12.1"));
  EXPECT_THAT(listed("Select MwSt_Konto, DZMwSt From Auftragspos"_sql),
              ElementsAre("3|20261231000000", "4|20270101000000"));
}

TEST_F(OrderSources, AnOrderWhoseTaxRateIsNoNumberIsNotWritten) {
  for (const auto& broken : {sql("Update Steuerschlüssel Set MwSt_Satz = Null"_sql),
                             sql("Update Steuerschlüssel Set MwSt_Satz = '7,5'"_sql)}) {
    connection().execute(broken);
    stagePlain("O1");
    run();
    EXPECT_EQ(outcomeOf("O1"), "32|Der Steuersatz des Steuerschlüssels: '3' ist keine Zahl.");
  }
  EXPECT_EQ(order()->recordCount(), 0U);
}

TEST_F(OrderSources, OrdersFailAndCustomersDoNotWhileTheDayOfTheTaxChangeCannotBeRead) {
  execute("Alter Table Einstellungen Rename To Stored"_sql);
  execute("Create View Einstellungen As Select Section, Key, Case Key When "
          "'DatumMwStÄnderung' Then json('{') Else Value End As Value From Stored Union All "
          "Select 'Allgemein', 'DatumMwStÄnderung', json('{')"_sql);
  stagePlain("O1");
  stageCustomer("K1", "20009");
  run();
  EXPECT_EQ(outcomeOf("O1"),
            "32|Der Tag der Steuersatzänderung (DatumMwStÄnderung) konnte nicht gelesen werden.");
  EXPECT_EQ(jobType("K1"), 13);
}

TEST_F(OrderSources, CodesAreWrittenAsTheirTablesSpellThemAndComparedWithoutRegardToCase) {
  takeFreight();
  erp.iniFile.set("Allgemein", "MinBestGebuehr", "100;5,25");
  execute("Insert Into Vertreter (VertreterNr, Bez1) Values ('V3', 'Au')"_sql);
  execute("Insert Into Zahlungsbedingungen (ZahlbedSchl) Values ('K14')"_sql);
  execute("Update Artikelstamm Set Erfassungsschema = 'zubehoer' Where Artikelnummer = 'Z300'"_sql);
  stageOrder("O1",
             {{"Versandart", "po"}, {"Zahlungsart", "nn"}, {"ZahlungsbedSchl", "k14"}, {"Vertreter1", "v3"}});
  stagePosition("O1", 1, "Z300", 1, {{"Preis", 15}});
  run();
  ASSERT_EQ(jobType("O1"), 33) << reasons("O1");
  const auto header = order();
  EXPECT_EQ(header->text("Versandart") + header->text("Zahlungsart") + header->text("ZahlungsbedSchl") +
                header->text("VertreterNr1"),
            "PONNK14V3");
  // The freight fee of 2.50 and the minimum-order fee of 5.25.
  EXPECT_THAT(listed("Select Artikelnummer, Preis From Auftragspos"_sql),
              ElementsAre("Z300|15", "FRACHT|6.9", "GEBUEHR|7.75"));
}

TEST_F(OrderSources, BankDataAreOneAccountWithTheNameOfItsCode) {
  // The code was changed since; the old name stayed beside it.
  execute("Update Kundenstamm Set Kreditinstitut = 'Alte Bank'"_sql);
  stagePlain("O1", {{"BLZ", "90000002"}});
  stagePlain("O2", {{"Konto", "88"}, {"Kreditinstitut", "Sparkasse"}});
  stagePlain("O3");
  stagePlain("O4", {{"BLZ", "9"}, {"Kreditinstitut", "Fernbank"}});
  run();
  std::vector<std::string> accounts;
  for (const auto rows = order(); !rows->eof(); rows->moveNext())
    accounts.push_back(rows->text("Konto") + "|" + rows->text("KontoNummer") + "|" +
                       rows->text("Bankleitzahl") + "|" + rows->text("Kreditinstitut"));
  EXPECT_THAT(accounts, ElementsAre("||90000002|Andere Bank", "88|||Sparkasse", "4711||90000001|Musterbank",
                                    "||9|Fernbank"));
}

TEST_F(OrderSources, TheTwoTextsOfAnOrderAreItsOwnAndOthersOnlyOfTheSameCustomer) {
  add("Kundenstamm", {{"Kundennummer", "14888"}, {"Bez1", "Barverkauf"}, {"Preisliste", "A"}});
  for (const char* customer : {"20001", "14888"}) {
    stagePlain(std::string(customer) + "A",
               {{"Kundennummer", customer}, {"IndFild2", "zwei"}, {"IndFild3", "drei"}});
    stagePlain(std::string(customer) + "B", {{"Kundennummer", customer}, {"IndFild3", "neu"}});
  }
  run();
  EXPECT_THAT(listed("Select Kundennummer, Ind_Text2, Ind_Text3 From Auftragskopf Order By Kundennummer, "
                     "Auftragsnummer"_sql),
              ElementsAre("14888|zwei|drei", "14888||neu", "20001|zwei|drei", "20001|zwei|neu"));
}

TEST_F(OrderSources, AKeyIsWrittenOnlyWithItsOwnAddress) {
  add("Adressenstamm", {{"Kundennummer", "20001"}, {"Adressnummer", "7"}, {"Bez1", "Lager Nord"}});
  const auto addressed = [](const char* key, const char* town) {
    return Properties{{"VS_AdrNr", key}, {"VS_Ort", town}};
  };
  stagePlain("O1", addressed("7", ""));
  stagePlain("O2", addressed("7", "Kiel"));
  stagePlain("O3", addressed("99", ""));
  stagePlain("O4", addressed("99", "Kiel"));
  run(qxProcessState::ProcessAufträge, true);
  std::vector<std::string> blocks;
  for (const auto rows = order(); !rows->eof(); rows->moveNext())
    blocks.push_back(rows->text("VS_KdNr") + "|" + rows->text("VS_AdrNr") + "|" + rows->text("VS_Bez1") +
                     "|" + rows->text("VS_Ort"));
  EXPECT_THAT(blocks,
              ElementsAre("20001|7|Lager Nord|", "20001|7||Kiel", "||Hafenbau GmbH|Hamburg", "|||Kiel"));
}

TEST_F(OrderSources, ThePurchasePriceIsThatOfTheQuantityInThePurchaseUnit) {
  execute("Update Artikelstamm Set Hauptlieferant = 'L1', MEEinkauf = 'DZ' "
          "Where Artikelnummer In ('A100', 'B200')"_sql);
  execute("Insert Into Umrechnungen (Artikelnummer, Mengeneinheit, Basiseinheit, Faktor) "
          "Values ('A100', 'DZ', 'ST', 12)"_sql);
  execute("Insert Into Einkaufspreise (Lieferantennummer, Artikelnummer, Mengeneinheit, "
          "Menge, EKPreis) Values ('L1', 'A100', 'DZ', 0, 60), ('L1', 'A100', 'DZ', 10, 48), "
          "('L1', 'B200', 'DZ', 0, 1)"_sql);
  stageOrder("O1");
  const Properties dozens{{"Mengeneinheit", "DZ"}};
  stagePosition("O1", 1, "A100", 36);
  stagePosition("O1", 2, "A100", 3, dozens);
  stagePosition("O1", 3, "A100", 120);
  stagePosition("O1", 4, "A100", 10, dozens);
  stagePosition("O1", 5, "B200", 1);
  run();
  ASSERT_EQ(jobType("O1"), 33) << reasons("O1");
  EXPECT_THAT(listed("Select EKPreis From Auftragspos"_sql), ElementsAre("60", "60", "48", "48", ""));
  EXPECT_THAT(erp.diagnostics.text(), ::testing::HasSubstr("purchase price of article B200"));
}

TEST_F(OrderSources, GapsInTheMasterDataLeaveNoTrace) {
  add("Benutzer", {{"UserName", "pruefer"}, {"PersonalNr", "1"}});
  add("Personalstamm", {{"PersonalNr", "1"}, {"Anrede", "Herr"}, {"Nachname", "Lüders"}});
  engine.Session(erp.environment.session);
  erp.setOption("KostenzuordnungAuftrag", "1");
  execute("Update Kundenstamm Set KostID = 0, KundeSeit = Null"_sql);
  execute("Update Artikelstamm Set WertJN = Null Where Artikelnummer = 'B200'"_sql);
  stageOrder("O1", {{"Bez1", ""}, {"Eingangsdatum", "20.11.2026 14:05:00"}});
  stagePosition("O1", 1, "B200", 2);
  run();
  const auto header = order();
  EXPECT_EQ(header->text("Sachbearbeiter"), "Herr Lüders");
  EXPECT_TRUE(header->value("KostID").isNull());
  EXPECT_EQ(header->value("Gesamtnetto"), Value(money("9.98")));
  EXPECT_EQ(lines()->text("ÄndUser"), "Import");
  EXPECT_EQ(customer("20001", "KundeSeit"), Value("20.11.2026"));
  const auto line = open("Select * From Protokollpositionen"_sql);
  EXPECT_EQ(line->text("Text3"), "20.11.2026");
  EXPECT_THAT(line->text("Memo0"), ::testing::HasSubstr("Kunde: Hafenbau GmbH\r\n"));
}

/// What would keep the order from being written.
bool isLeftAsItIs(std::string_view column) {
  constexpr std::array<std::string_view, 3> refusing{"Liefersperre", "ArtikelGesperrt", "ProcessWarning"};
  return std::ranges::find(refusing, column) != refusing.end();
}

class FullOrder : public OrderSources {
protected:
  FullOrder() {
    add("Benutzer", {{"UserName", "pruefer"}, {"PersonalNr", "1"}});
    add("Personalstamm", {{"PersonalNr", "1"}});
    add("Vertreter", {{"VertreterNr", "1"}});
    add("Versandtexte", {{"Versandart", "1"}});
    add("Zahlungsarten", {{"Zahlungsart", "1"}});
    add("Zahlungsbedingungen", {{"ZahlbedSchl", "1"}});
    add("Währungen", {{"Währung", "1"}});
    add("Kostenzuordnung", {{"KostID", 1}, {"Kostenstelle", "1"}});
    add("Adressenstamm", {{"Kundennummer", "1"}, {"Adressnummer", "1"}});
    add("Umrechnungen",
        {{"Artikelnummer", ""}, {"Mengeneinheit", "1"}, {"Basiseinheit", "ST"}, {"Faktor", 1.0}});
    add("Einkaufspreise", {{"Lieferantennummer", "1"}, {"Artikelnummer", "A100"}, {"GueltigAb", "20260101"}});
    erp.setOption("KostenzuordnungAuftrag", "1");
    engine.Session(erp.environment.session);
  }
  /// Puts something into every column that is null, and into every empty one of the jobs.
  void fillUp() {
    WorkUnit unit(connection());
    for (const erp::SchemaTable& table : erp::schemaTables()) {
      if (table.name.starts_with("Auftrag") || table.name == "Belegindex") continue;
      const char* empty = table.name.starts_with("Import") ? "" : "-";
      for (const erp::SchemaColumn& column : table.columns)
        if (!isLeftAsItIs(column.name))
          execute("Update "_sql, name(table.name), " Set "_sql, name(column.name), " = '1' Where "_sql,
                  name(column.name), " Is Null Or "_sql, name(column.name), " = '"_sql, value(empty),
                  "'"_sql);
    }
    unit.commit();
  }
  std::vector<std::string> columnsAlwaysNull() {
    std::vector<std::string> columns;
    for (const erp::SchemaTable& table : erp::schemaTables()) {
      if (!table.name.starts_with("Auftrag") && table.name != "Belegindex") continue;
      for (const erp::SchemaColumn& column : table.columns)
        if (count("Select Count("_sql, name(column.name), ") From "_sql, name(table.name)) == 0)
          columns.push_back(std::string(table.name) + "." + std::string(column.name));
    }
    return columns;
  }
};

TEST_F(FullOrder, HasAllColumnsButThoseThatNothingHolds) {
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 1, {{"Mengeneinheit", "ST"}});
  fillUp();
  ASSERT_TRUE(run(qxProcessState::ProcessAufträge, true));
  ASSERT_EQ(jobType("O1"), 33) << reasons("O1");
  EXPECT_THAT(columnsAlwaysNull(),
              ElementsAre("Auftragskopf.InterneBemerkung", "Auftragskopf.IhreBestellung"));
}

} // namespace
} // namespace qx
