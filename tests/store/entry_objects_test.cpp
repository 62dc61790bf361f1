#include "store/entry_objects.h"

#include "support/erp_file.h"
#include "support/recording_connection.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace qx;

namespace {

/// Lets every text property hold its own name.
template <class Record, std::size_t N>
void nameTexts(Record& record, const FieldTable<Record, N>& table) {
  for (const auto& field : table)
    field.visit(record, [&](auto& property) {
      if constexpr (std::is_same_v<std::remove_reference_t<decltype(property)>, std::string>)
        property = field.name;
    });
}

/// The columns that `AddItem` of a class sets on the host's record set, in their order.
template <class Item>
std::string columnsSetBy() {
  ErpFile erp;
  const auto recording = std::make_shared<RecordingConnection>(erp.environment.connection, true);
  erp.environment.connection = recording;
  Item(erp.environment).AddItem();
  std::string text;
  for (const std::string& column : recording->columns) text += (text.empty() ? "" : " ") + column;
  EXPECT_TRUE(erp.diagnostics.entries.empty()) << erp.diagnostics.text();
  return text;
}

} // namespace

TEST(EntryObjects, SetTheirColumnsInTheOrderThatHostsSee) {
  const std::string header =
      "JobID JobType ImportType Status Eingangsdatum Kundennummer Suchbegriff Bez1 Bez2 Bez3 Strasse Land "
      "PLZ "
      "Ort Telefon Telefax EMail Kundengruppe Vertreter1 Vertreter2 Vertreter3 Zahlungsart Konto BLZ "
      "Kreditinstitut Bemerkung Vertragsnummer Zahlungsweise Währung WährungEingabe Fehlertext Betreff "
      "Versandart ZahlungsbedSchl Provisionsgruppe UstIdentNr VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto "
      "VS_Bez1 VS_Bez2 VS_Bez3 VS_Straße VS_Land VS_PLZ VS_Ort RG_Bez1 RG_Bez2 RG_Bez3 RG_Straße RG_Land "
      "RG_PLZ RG_Ort";
  EXPECT_EQ(columnsSetBy<Kunde>(), header + " Preisliste Preistyp IndFild1 IndFild2 IndFild3 IndFild4 "
                                            "KundeSeit KundeVerlorenAm GrundVerloren GrundVerlorenSchl");
  EXPECT_EQ(columnsSetBy<Auftrag>(), header + " IndFild1 IndFild2 IndFild3 Liefertermin KostID");
  EXPECT_EQ(
      columnsSetBy<Vertrag>(),
      "JobID JobType ImportType Status Eingangsdatum Kundennummer Vertragsnummer Artikelnummer "
      "Vertragsart Zustand Vertragstext Vertragsdatum Vertragsbeginn Vertragsende Intervall Menge Preis "
      "Fehlertext Bemerkung IndFild1 IndFild2 IndFild3 IndFild4 VS_KdNr GekuendigtAm GrundVerlorenSchl");
  EXPECT_EQ(
      columnsSetBy<AuftragsPos>(),
      "JobID ChildID JobType Positionsnummer Artikelnummer Menge Preis Artikellangtext "
      "Auslieferungsmenge Fakturiermenge Lieferbereit Fakturierbereit Mengeneinheit Liefertermin KostID "
      "Rabatt Preiseinheit");
}

TEST(EntryObjects, AreCreatedWaitingWithAKeyAndTheSessionsDate) {
  FakeWorld world;
  world.session->date = makeDate(2007, 5, 3);
  const Kunde customer(world.environment);
  const Vertrag contract(world.environment);
  const Auftrag order(world.environment);
  const AuftragsPos position(world.environment);
  EXPECT_EQ(customer.JobType, 10);
  EXPECT_EQ(contract.JobType, 20);
  EXPECT_EQ(order.JobType, 30);
  EXPECT_EQ(position.JobType, 50);
  EXPECT_EQ(customer.Status, 10);
  EXPECT_EQ(contract.Eingangsdatum, "03.05.2007");
  EXPECT_EQ(customer.JobID, "00000001000000000000000000000000");
  EXPECT_EQ(position.ChildID, "00000004000000000000000000000000");
  EXPECT_EQ(position.JobID, order.JobID);
  EXPECT_TRUE(world.diagnostics.entries.empty()) << world.diagnostics.text();
}

TEST(EntryObjects, WithoutASessionOrAKeyTheyAreCreatedAllTheSame) {
  FakeWorld world;
  world.environment.session = nullptr;
  world.clock.moment.date = makeDate(2026, 11, 24);
  world.guids.failing = true;
  const Auftrag order(world.environment);
  EXPECT_EQ(order.Eingangsdatum, "24.11.2026");
  EXPECT_EQ(order.JobID, "");
  EXPECT_EQ(world.diagnostics.entries.size(), 1U) << world.diagnostics.text();
}

TEST(EntryObjects, PositionsAttachToTheOrderCreatedLast) {
  FakeWorld world;
  Auftrag first(world.environment);
  const std::string created = first.JobID;
  first.JobID = "umbenannt";
  EXPECT_EQ(AuftragsPos(world.environment).JobID, created);
  const Auftrag second(world.environment);
  first.AddItem(); // has no connection, and moves nothing
  EXPECT_EQ(AuftragsPos(world.environment).JobID, second.JobID);
}

TEST(EntryObjects, ReadyFlagsAreSetByExactlyOne) {
  FakeWorld world;
  for (const char* setting : {"", "0", " 1", "2", "-1", "01", "Wahr"}) {
    world.session->SaveSetting("ImportJob2", "AuftragLieferbereit", setting);
    EXPECT_FALSE(AuftragsPos(world.environment).Lieferbereit) << setting;
  }
  world.session->SaveSetting("ImportJob2", "AuftragLieferbereit", "1");
  EXPECT_TRUE(AuftragsPos(world.environment).Lieferbereit);
  EXPECT_FALSE(AuftragsPos(world.environment).Fakturierbereit);
}

TEST(EntryObjects, AddItemWritesOneRowHoweverOften) {
  ErpFile erp;
  Kunde customer(erp.environment);
  customer.Ort = "Bonn";
  customer.AddItem();
  customer.Ort = "Köln";
  customer.AddItem();
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 1);
  EXPECT_EQ(erp.single("Select Ort From ImportKopf"_sql), Value("Köln"));
}

TEST(EntryObjects, AFailingAddItemIsTrappedAndTold) {
  ErpFile erp;
  erp.execute("Drop Table ImportPos"_sql);
  const AuftragsPos position(erp.environment);
  position.AddItem();
  ASSERT_EQ(erp.diagnostics.entries.size(), 1U);
  EXPECT_EQ(erp.diagnostics.entries[0].where, "AuftragsPos.AddItem");
  EXPECT_EQ(erp.diagnostics.entries[0].job, position.ChildID);
  EXPECT_TRUE(erp.desktop.shown.empty());
}

TEST(EntryObjects, TextLineOfACustomer) {
  FakeWorld world;
  Kunde customer(world.environment);
  nameTexts<KundeFields>(customer, kundeFields);
  customer.Preistyp = 7;
  EXPECT_EQ(
      customer.FormatItemCSV(),
      R"("10";"JobID";"Bemerkung";"Betreff";"Bez1";"Bez2";"Bez3";"BLZ";"";"Eingangsdatum";"EMail";)"
      R"("Fehlertext";"Hauptkonto";"Konto";"Kreditinstitut";"Kundengruppe";"Kundennummer";"Land";"Ort";)"
      R"("PLZ";"Preisliste";"Provisionsgruppe";"RG_AdrNr";"RG_Bez1";"RG_Bez2";"RG_Bez3";"RG_KdNr";)"
      R"("RG_Land";"RG_Ort";"RG_PLZ";"RG_Strasse";"10";"Strasse";"Suchbegriff";"Telefax";"Telefon";)"
      R"("UstIdentNr";"Versandart";"Vertragsnummer";"Vertreter1";"Vertreter2";"Vertreter3";"VS_AdrNr";)"
      R"("VS_Bez1";"VS_Bez2";"VS_Bez3";"VS_KdNr";"VS_Land";"VS_Ort";"VS_PLZ";"VS_Strasse";"Währung";)"
      R"("WährungEingabe";"Zahlungsart";"ZahlungsbedSchl";"Zahlungsweise";"7";"IndFild1";"IndFild2";)"
      R"("IndFild3";"IndFild4";"KundeSeit";"KundeVerlorenAm";"GrundVerloren";"GrundVerlorenSchl";)");
}

TEST(EntryObjects, TextLinesOfTheOthersFollowTheJobFile) {
  FakeWorld world;
  Vertrag contract(world.environment);
  nameTexts<VertragFields>(contract, vertragFields);
  contract.Menge = 2.5;
  EXPECT_EQ(
      contract.FormatItemCSV(),
      R"("20";"JobID";"Bemerkung";"Eingangsdatum";"Fehlertext";"0";"Kundennummer";"Kündigungsgrund";)"
      R"("2,5";"0";"10";"Vertragsart";"Vertragsbeginn";"Vertragsdatum";"Vertragsende";"Vertragsnummer";)"
      R"("Vertragstext";"Artikelnummer";"Zustand";"0";"PreisabweichungGenehmigender";)"
      R"("PreisabweichungDatum";"PreisabweichungBemerkung";)");
  AuftragsPos position(world.environment);
  nameTexts<AuftragsPosFields>(position, auftragsPosFields);
  position.Lieferbereit = true;
  position.KostID = 9;
  EXPECT_EQ(position.FormatItemCSV(),
            R"("50";"JobID";"ChildID";"Artikellangtext";"Artikelnummer";"0";"Falsch";"0";"Wahr";"0";)"
            R"("Mengeneinheit";"0";"0";"0";"0";"Liefertermin";"9";)");
  const Auftrag order(world.environment);
  const std::string line = order.FormatItemCSV();
  EXPECT_EQ(std::ranges::count(line, ';'), 62);
  // What an order does not have is an empty field.
  EXPECT_TRUE(line.ends_with(R"("";"";"";"";"";"";"0";)")) << line;
}
