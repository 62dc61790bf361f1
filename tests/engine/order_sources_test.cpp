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
  void stagePlain(std::string_view jobId, const std::function<void(AuftragFields&)>& change = {}) {
    stageOrder(jobId, change);
    stagePosition(jobId, 1, "A100", 1);
  }
  /// The orders' values of a column in the order of writing.
  std::vector<std::string> headers(ColumnName column) {
    std::vector<std::string> values;
    for (const auto rows = order(); !rows->eof(); rows->moveNext()) values.push_back(rows->text(column));
    return values;
  }
  void addRange(int circle, int drawn) {
    TableFiller(connection(), "Nummernkreise")
        .add({{"NSchl", "AB"}, {"Buchungskreis", circle}, {"Aktiviert", true}, {"aktuellerWert", drawn}});
  }
};

TEST_F(OrderSources, TheBookingCircleIsAskedOnceOrForEachOrder) {
  addRange(2, 500);
  TableFiller(connection(), "Benutzer").add({{"UserName", "pruefer"}, {"Buchungskreis", 1}});
  // The user moves to another circle while the run is under way.
  connection().execute(sql("CREATE TRIGGER move AFTER INSERT ON Belegindex BEGIN Update Benutzer Set "
                           "Buchungskreis = 2; END"_sql));
  stagePlain("O1");
  stagePlain("O2");
  run();
  EXPECT_THAT(headers("Auftragsnummer"), ElementsAre("1", "2"));

  erp.setSetting("Buchungskreise", "OnNewAB", "1");
  connection().execute(sql("Update Benutzer Set Buchungskreis = 1"_sql));
  stagePlain("O3");
  stagePlain("O4");
  run();
  EXPECT_THAT(headers("Auftragsnummer"), ElementsAre("1", "2", "3", "501"));
  EXPECT_THAT(headers("Buchungskreis"), ElementsAre("1", "1", "1", "2"));
}

TEST_F(OrderSources, AMarkedOrderOfTheCollectingCustomerHasTheCircleOfItsRep) {
  addRange(2, 500);
  TableFiller(connection(), "Vertreter").add({{"VertreterNr", "2"}, {"Bez1", "See"}});
  for (const char* number : {"14999", "1499900"})
    TableFiller(connection(), "Kundenstamm").add({{"Kundennummer", number}, {"Preisliste", "A"}});
  const auto ofRep = [](const char* customer, const char* mark) {
    return [=](AuftragFields& job) {
      job.Kundennummer = customer;
      job.IndFild1 = mark;
      job.Vertreter1 = "2";
    };
  };
  stagePlain("O1", ofRep("14999", "ZB"));
  stagePlain("O2", ofRep("14999", "zb"));
  stagePlain("O3", ofRep("1499900", "ZB"));
  stagePlain("O4", ofRep("20001", "ZB"));
  run();
  EXPECT_THAT(headers("Auftragsnummer"), ::testing::UnorderedElementsAre("501", "1", "502", "2"));
}

TEST_F(OrderSources, TheDateOfReceiptDecidesTheTaxKey) {
  TableFiller(connection(), "Steuerschlüssel").add({{"Steuerschlüssel", 4}, {"MwSt_Satz", 21.0}});
  connection().execute(
      sql("Update Steuerschlüsselzuordnung Set SteuerschlüsselNeu = 4 Where MwStKZArtikel = 'V'"_sql));
  connection().execute(sql("Update Kundenstamm Set Auftragsrabatt = 0"_sql));
  erp.setSetting("Allgemein", "DatumMwStÄnderung", "20270101000000");
  stagePlain("O1", [](AuftragFields& job) { job.Eingangsdatum = "31.12.2026"; });
  stagePlain("O2", [](AuftragFields& job) { job.Eingangsdatum = "1.1.2027"; });
  run();
  // 10.00 with 19 % and with 21 %.
  EXPECT_THAT(headers("Gesamtbrutto"), ElementsAre("11.9", "12.1"));
  EXPECT_EQ(erp.text(sql("Select Group_Concat(MwSt_Konto || ' ' || DZMwSt) From Auftragspos"_sql)),
            "3 20261231000000,4 20270101000000");
}

/// What would keep the order from being written.
bool isLeftAsItIs(std::string_view column) {
  constexpr std::array<std::string_view, 3> refusing{"Liefersperre", "ArtikelGesperrt", "ProcessWarning"};
  return std::ranges::find(refusing, column) != refusing.end();
}

class FullOrder : public OrderSources {
protected:
  FullOrder() {
    TableFiller(connection(), "Benutzer").add({{"UserName", "pruefer"}, {"PersonalNr", "1"}});
    TableFiller(connection(), "Personalstamm").add({{"PersonalNr", "1"}});
    TableFiller(connection(), "Vertreter").add({{"VertreterNr", "1"}});
    TableFiller(connection(), "Versandtexte").add({{"Versandart", "1"}});
    TableFiller(connection(), "Zahlungsarten").add({{"Zahlungsart", "1"}});
    TableFiller(connection(), "Zahlungsbedingungen").add({{"ZahlbedSchl", "1"}});
    TableFiller(connection(), "Währungen").add({{"Währung", "1"}});
    TableFiller(connection(), "Kostenzuordnung").add({{"KostID", 1}, {"Kostenstelle", "1"}});
    TableFiller(connection(), "Einkaufspreise").add({{"Lieferantennummer", "1"}, {"Artikelnummer", "A100"}});
    erp.setOption("KostenzuordnungAuftrag", "1");
    engine.Session(erp.environment.session);
  }
  /// Puts something into every column that is null, and into every empty one of the jobs.
  void fillUp() {
    WorkUnit unit(connection());
    for (const SchemaTable& table : schemaTables()) {
      if (table.name.starts_with("Auftrag") || table.name == "Belegindex") continue;
      const char* empty = table.name.starts_with("Import") ? "" : "-";
      for (const SchemaColumn& column : table.columns)
        if (!isLeftAsItIs(column.name))
          connection().execute(sql("Update "_sql, name(table.name), " Set "_sql, name(column.name),
                                   " = '1' Where "_sql, name(column.name), " Is Null Or "_sql,
                                   name(column.name), " = '"_sql, value(empty), "'"_sql));
    }
    unit.commit();
  }
  std::vector<std::string> columnsAlwaysNull() {
    std::vector<std::string> columns;
    for (const SchemaTable& table : schemaTables()) {
      if (!table.name.starts_with("Auftrag") && table.name != "Belegindex") continue;
      for (const SchemaColumn& column : table.columns)
        if (count(sql("Select Count("_sql, name(column.name), ") From "_sql, name(table.name))) == 0)
          columns.push_back(std::string(table.name) + "." + std::string(column.name));
    }
    return columns;
  }
};

TEST_F(FullOrder, HasAllColumnsButThoseThatNothingHolds) {
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 1, [](AuftragsPosFields& position) { position.Mengeneinheit = "ST"; });
  fillUp();
  ASSERT_TRUE(run(qxProcessState::ProcessAufträge, true));
  ASSERT_EQ(jobType("O1"), 33) << reasons("O1");
  EXPECT_THAT(columnsAlwaysNull(),
              ElementsAre("Auftragskopf.InterneBemerkung", "Auftragskopf.IhreBestellung"));
}

} // namespace
} // namespace qx
