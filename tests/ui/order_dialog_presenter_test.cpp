#include "dialog_fixture.h"

namespace qx {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

class OrderDialogTest : public DialogTest {
protected:
  static std::size_t column(JobGrid& grid, std::string_view name) {
    for (std::size_t i = 0; i < grid.columns().size(); ++i)
      if (grid.columns()[i].name == name) return i;
    ADD_FAILURE() << name;
    return 0;
  }
  static std::string cell(JobGrid& grid, std::size_t row, std::string_view name) {
    return grid.cell(row, column(grid, name)).text;
  }
  void stagePriced(std::string_view jobId, std::int32_t number, std::string_view article, double quantity,
                   double price) {
    stagePosition(jobId, number, article, quantity,
                  {{"Preis", price},
                   {"Mengeneinheit", "ST"},
                   {"Rabatt", 3},
                   {"ChildID", "P" + std::to_string(number)}});
  }
};

TEST_F(OrderDialogTest, ShowsThePositionsInTheOrderOfTheirNumbersAndComparesPrices) {
  stageOrder("O1");
  stagePriced("O1", 10, "B200", 1, 5.99);
  stagePriced("O1", 2, "G400", 1, 1);
  stagePriced("O1", 1, "A100", 1, 10);
  stagePriced("O1", 3, "GEBUEHR", 1, 1);
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  ASSERT_EQ(grid.rowCount(), 4U);
  EXPECT_EQ(cell(grid, 0, "Artikelnummer"), "A100");
  EXPECT_EQ(cell(grid, 3, "Artikelnummer"), "B200");
  EXPECT_THAT(findings(*dialog),
              ElementsAre("PR 2|30|Es ist ein Fehler beim ermitteln des Preises aufgetreten.",
                          "PR 3|20|Es konnte kein Preis gefunden werden!",
                          "PR 10|20|Ermittelter Preis: 4,99 weicht vom Importpreis: 5,99 ab!"));
  EXPECT_EQ(grid.cell(0, 0).bitmap, "PROCESSING");
  EXPECT_EQ(grid.cell(1, 0).bitmap, "ERROR");
  EXPECT_EQ(cell(grid, 3, "Preis2"), "4,99");
  EXPECT_EQ(grid.cell(3, column(grid, "Preis")).message, "Preis weicht ab.");
}

TEST_F(OrderDialogTest, APriceThatNobodyStagedIsNoDifferenceAndAnotherOneParksNothing) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 1, 0);
  const auto dialog = opened("O1");
  EXPECT_THAT(findings(*dialog), IsEmpty());
  dialog->kind().grid->editing()->edit(0, column(*dialog->kind().grid, "Preis"), "11");
  EXPECT_THAT(findings(*dialog),
              ElementsAre("PR 1|20|Ermittelter Preis: 10,00 weicht vom Importpreis: 11,00 ab!"));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Clean);
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(field("O1", "Status").integer(), 10);
  erp.setSetting("Allgemein", "Individual", "VLK");
  EXPECT_EQ(opened("O1")->verdict(), CheckStatus::Warning);
  EXPECT_EQ(engine.checkJob("O1").status(), CheckStatus::Warning);
}

TEST_F(OrderDialogTest, ACreditLimitOfTwoMeaningsIsAnErrorHereAsInTheCheck) {
  erp.setOption("KreditlimitAuftrag", "1");
  execute("Update Kundenstamm Set Kreditlimit1 = Null"_sql);
  erp.setSetting("OP-Info", "Kreditlimit1", "1.000");
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 1, 10);
  const auto dialog = opened("O1");
  EXPECT_THAT(findings(*dialog), Contains("KL|30|Das Kreditlimit '1.000' ist nicht eindeutig: 1000 oder 1."));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Error);
  EXPECT_EQ(dialog->notice(), "");
  EXPECT_EQ(engine.checkJob("O1").status(), CheckStatus::Error);
  erp.setSetting("OP-Info", "Kreditlimit1", "1000");
  enter(*dialog, "txtHinweis", "");
  EXPECT_THAT(findings(*dialog), Not(Contains(testing::HasSubstr("Kreditlimit"))));
}

TEST_F(OrderDialogTest, WhatTheCheckFindsBeyondTheFieldsIsListedAndCounts) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  erp.setOption("KreditlimitAuftrag", "1");
  erp.setOption("ZAVSRG", "VK");
  erp.setOption("VAKunde", "VA");
  add("OffenePosten", {{"Kundennummer", "20001"},
                       {"Belegnummer", "1"},
                       {"Betrag", *Money::parse("500")},
                       {"Währung", "EUR"}});
  execute("Update Kundenstamm Set Kreditlimit1 = 100, Kreditlimit2 = 500"_sql);
  stageOrder("O1", {{"Bemerkung", "Bitte anrufen"}});
  set("O1", "IndFild1", "ZB");
  set("O1", "IndFild4", "MK");
  stagePriced("O1", 1, "A100", 1, 10);
  const auto dialog = opened("O1");
  const auto told = findings(*dialog);
  EXPECT_THAT(told, Contains("KL2|30|Kreditlimit 2 ist überschritten (Auftragssperre)"));
  EXPECT_THAT(told, Contains("NO|20|Achtung es ist eine Notiz hinterlegt."));
  EXPECT_THAT(told, Contains("IF1|20|Ind_Field ZB"));
  EXPECT_THAT(told, Contains("IF4|20|Ind_Field MK"));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Error);
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(field("O1", "Status").integer(), 30);
  // Another customer, another limit; a removed note does not count.
  enter(*dialog, "txtHinweis", "");
  enter(*dialog, "txtIndFild1", "");
  enter(*dialog, "txtIndFild4", "");
  enter(*dialog, "txtKundennummer", "14888");
  for (const char* code : {"KL1", "KL2", "NO", "IF1", "IF4"})
    EXPECT_THAT(codes(*dialog), Not(Contains(code)));
}

TEST_F(OrderDialogTest, ATextOfTheSenderCountsAsTheCheckCountsIt) {
  stageOrder("O1", {{"Fehlertext", "vom Shop"}});
  stagePriced("O1", 1, "A100", 1, 10);
  EXPECT_EQ(opened("O1")->verdict(), CheckStatus::Warning);
  EXPECT_EQ(engine.checkJob("O1").status(), CheckStatus::Warning);
  set("O1", "JobType", "32");
  EXPECT_EQ(opened("O1")->verdict(), CheckStatus::Clean);
  EXPECT_EQ(engine.checkJob("O1").status(), CheckStatus::Clean);
}

TEST_F(OrderDialogTest, WarnsOfStockAndCostAssignmentOnlyWhereTheOptionsSaySo) {
  add("Artikellager",
      {{"Artikelnummer", "A100"}, {"Lagernummer", "1"}, {"Lagerbestand", 2.0}, {"MitBestand", true}});
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 3, 10);
  // The ERP wants a cost centre; the option that lets orders be checked for it is off.
  erp.setSetting("Kostenzuordnung", "Kundenauftrag", "1");
  EXPECT_THAT(findings(*opened("O1")), IsEmpty());
  erp.setOption("WarnungLagerbestand", "1");
  erp.setOption("KostenzuordnungAuftrag", "1");
  add("Kostenzuordnung", {{"KostID", 7}, {"Kostenstelle", "K1"}});
  const auto dialog = opened("O1");
  EXPECT_THAT(findings(*dialog),
              UnorderedElementsAre("LB 1|20|Achtung: Lagerbestand für Artikel 'A100' reicht nicht aus!",
                                   "KO 1|20|Achtung: Fehlende Kostenzuordnung für Artikel 'A100'!"));
  // Mending one value leaves the other findings.
  JobGrid& grid = *dialog->kind().grid;
  EXPECT_EQ(grid.editing()->edit(0, column(grid, "Menge"), "2"), "");
  EXPECT_THAT(codes(*dialog), ElementsAre("KO"));
  const auto details = grid.editing()->details(0);
  const ControlState& cost = details->control(*details->find("tdbnbrKostID"));
  EXPECT_EQ(cost.picture, CheckStatus::Warning);
  EXPECT_EQ(cost.message, "Achtung: Fehlende Kostenzuordnung für Artikel 'A100'!");
  EXPECT_EQ(details->control(*details->find("tdbnbrPreis")).picture, CheckStatus::Clean);
  details->type(*details->find("tdbnbrKostID"), "8");
  details->leave(*details->find("tdbnbrKostID"));
  EXPECT_THAT(codes(*dialog), ElementsAre("KO")) << "nobody has laid down this number";
  details->type(*details->find("tdbnbrKostID"), "7");
  details->leave(*details->find("tdbnbrKostID"));
  EXPECT_EQ(cost.picture, CheckStatus::Clean);
  EXPECT_THAT(codes(*dialog), IsEmpty());
}

TEST_F(OrderDialogTest, AnUnknownCustomerAndAnOrderWithoutPositionsAreErrors) {
  stageOrder("O1", {{"Kundennummer", "5"}, {"Bez1", "Laden"}});
  EXPECT_THAT(findings(*opened("O1")), ElementsAre("KN|30|Kundennummer 5 ist nicht angelegt.",
                                                   "PO|30|Auftrag ohne Positionen angelegt."));
}

TEST_F(OrderDialogTest, NamesAOneTimeCustomerByTheOrder) {
  execute("Update Kundenstamm Set KZDivers = 1"_sql);
  stageOrder("O1", {{"Bez1", "Laufkundschaft"}});
  stagePriced("O1", 1, "A100", 1, 10);
  const auto dialog = opened("O1");
  EXPECT_EQ(state(*dialog, "txtKundennummer").description, "(Divers) Laufkundschaft");
  EXPECT_THAT(findings(*dialog), IsEmpty());
}

TEST_F(OrderDialogTest, SavesHeaderAndPositionsAndCarriesWhatTheGridDoesNotShow) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 1, 10);
  stagePriced("O1", 2, "B200", 1, 4.99);
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  EXPECT_EQ(grid.editing()->edit(0, column(grid, "Menge"), "1,5"), "");
  EXPECT_EQ(grid.editing()->edit(0, column(grid, "Menge"), "viel"), "'viel' ist keine Zahl.");
  EXPECT_EQ(cell(grid, 0, "Menge"), "1,5");
  grid.editing()->removeRow(1);
  const std::size_t added = grid.editing()->addRow();
  EXPECT_EQ(grid.editing()->edit(added, column(grid, "Artikelnummer"), "B200"), "");
  EXPECT_EQ(grid.editing()->paste(added + 1, column(grid, "Artikelnummer"),
                                  "A100\t4\tST\t9,99\r\nZ300\tx\tST\t15\n"),
            "Position 4, Menge: 'x' ist keine Zahl.\n");
  enter(*dialog, "tdbVersandart", "SP");
  EXPECT_TRUE(dialog->changed());
  ASSERT_TRUE(dialog->save());
  EXPECT_FALSE(dialog->changed());
  EXPECT_EQ(fields("O1", {"Versandart", "Status"}), "SP|20");
  EXPECT_THAT(listed("Select Positionsnummer, Artikelnummer, Menge, JobType, Rabatt, JobID "
                     "From ImportPos Order by Cast(Positionsnummer as int)"_sql),
              ElementsAre("1|A100|1.5|50|3|O1", "2|B200||50||O1", "3|A100|4|50||O1", "4|Z300||50||O1"));
}

TEST_F(OrderDialogTest, APositionThatTheDatabaseRefusesLeavesTheStoredOrderAsItWas) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 1, 10);
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  grid.editing()->edit(grid.editing()->addRow(), column(grid, "Artikelnummer"), "B200");
  enter(*dialog, "txtTelefon", "040");
  execute("Create Trigger refuse Before Insert On ImportPos When new.Artikelnummer = 'B200' "
          "Begin Select Raise(Abort, 'refused'); End"_sql);
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(erp.desktop.shown.back().text, "Fehler beim Speichern der Daten");
  EXPECT_EQ(count("Select Count(*) From ImportPos"_sql), 1);
  EXPECT_EQ(field("O1", "Telefon").text(), "");
  EXPECT_EQ(grid.rowCount(), 2U);
  EXPECT_TRUE(dialog->changed());
}

TEST_F(OrderDialogTest, ChecksALongOrderInSteps) {
  stageOrder("O1");
  WorkUnit unit(connection());
  for (int i = 1; i <= 120; ++i) stagePriced("O1", i, "A100", 1, 11);
  unit.commit();
  const auto dialog = opened("O1");
  EXPECT_EQ(dialog->checksLeft(), 70U);
  EXPECT_EQ(dialog->findings().size(), 50U);
  while (dialog->checksLeft() > 0) dialog->checkMore(50);
  EXPECT_EQ(dialog->findings().size(), 120U);
}

TEST_F(OrderDialogTest, OpensADoneOrderForReadingWithItsPositions) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 1, 10);
  set("O1", "JobType", "33");
  const auto dialog = opened("O1");
  EXPECT_TRUE(dialog->readOnly());
  EXPECT_FALSE(dialog->kind().grid->editable());
  EXPECT_EQ(dialog->kind().grid->cell(0, 0).bitmap, "PROCESSED");
  EXPECT_NE(dialog->kind().grid->editing()->edit(0, 2, "5"), "");
}

TEST_F(OrderDialogTest, QuantitiesToDeliverFollowTheOrderedOneUnlessTheyDiffer) {
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 5, {{"Auslieferungsmenge", 5}, {"Fakturiermenge", 2}});
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  EXPECT_EQ(grid.editing()->edit(0, column(grid, "Menge"), "3"), "");
  EXPECT_EQ(cell(grid, 0, "Auslieferungsmenge"), "3");
  EXPECT_EQ(cell(grid, 0, "Fakturiermenge"), "2");
  // Pasting is another way of typing.
  EXPECT_EQ(grid.editing()->paste(0, column(grid, "Menge"), "7"), "");
  EXPECT_EQ(cell(grid, 0, "Auslieferungsmenge"), "7");
  EXPECT_EQ(cell(grid, 0, "Fakturiermenge"), "2");
  EXPECT_EQ(grid.editing()->paste(1, column(grid, "Artikelnummer"), "B200\t4"), "");
  EXPECT_EQ(cell(grid, 1, "Auslieferungsmenge"), "4");
  EXPECT_EQ(cell(grid, 1, "Fakturiermenge"), "4");
}

TEST_F(OrderDialogTest, ARowIsCalledByTheNumberThatItsFindingsName) {
  stageOrder("O1");
  stagePriced("O1", 20, "B200", 1, 5.99);
  stagePriced("O1", 10, "A100", 1, 10);
  const auto dialog = opened("O1");
  EXPECT_THAT(findings(*dialog), ElementsAre(testing::StartsWith("PR 20|20|")));
  EXPECT_EQ(dialog->kind().grid->rowLabel(0), "10");
  EXPECT_EQ(dialog->kind().grid->rowLabel(1), "20");
}

TEST_F(OrderDialogTest, TheDetailsOfAPositionReachWhatTheGridDoesNotShow) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 1, 10);
  const auto dialog = opened("O1");
  const auto details = dialog->kind().grid->editing()->details(0);
  ASSERT_NE(details, nullptr);
  const auto type = [&](std::string_view control, std::string_view text) {
    details->type(*details->find(control), text);
    details->leave(*details->find(control));
  };
  type("tdbnbrKostID", "12");
  type("tdbnbrRabatt", "2,5");
  type("tdbnbrPreis", "9");
  const ControlState& price = details->control(*details->find("tdbnbrPreis"));
  EXPECT_EQ(price.picture, CheckStatus::Warning);
  EXPECT_EQ(price.message, "Ermittelter Preis: 10,00 weicht vom Importpreis: 9,00 ab!");
  type("tdbnbrMenge", "?");
  EXPECT_EQ(details->control(*details->find("tdbnbrMenge")).text, "?");
  EXPECT_EQ(details->control(*details->find("tdbnbrMenge")).message, "'?' ist keine Zahl.");
  chosen = {"B200"};
  EXPECT_TRUE(details->lookUp(*details->find("txtArtikelnummer")));
  EXPECT_EQ(details->control(*details->find("txtArtikelnummer")).description, "Artikel B200");
  ASSERT_TRUE(dialog->save());
  EXPECT_THAT(listed("Select KostID, Rabatt, Artikelnummer, Menge From ImportPos"_sql),
              ElementsAre("12|2.5|B200|1"));
}

TEST_F(OrderDialogTest, ShowsTheIndividualFieldsInTheirModeOnly) {
  stageOrder("O1", {{"IndFild1", "ZB"}});
  EXPECT_FALSE(opened("O1")->find("txtIndFild1"));
  customerSpecific();
  execute("Update Kundenstamm Set Versandart = 'XX'"_sql);
  const auto dialog = opened("O1");
  EXPECT_EQ(state(*dialog, "txtIndFild1").text, "ZB");
  EXPECT_THAT(findings(*dialog), Contains("VSK|20|Versandart Kunde: XX wurde noch nicht angelegt."));
}

TEST_F(OrderDialogTest, AnOrderThatWasStagedAgainMeanwhileKeepsItsNewPositions) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 8, 10);
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  ASSERT_EQ(grid.editing()->edit(0, column(grid, "Preis"), "11"), "");
  execute("Update ImportPos Set Menge = 99"_sql);
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(dialog->loss(), JobLoss::Changed);
  EXPECT_EQ(text("Select Menge || ' zu ' || Preis From ImportPos"_sql), "99.0 zu 10.0");
}

TEST_F(OrderDialogTest, SavesTwiceInARow) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 8, 10);
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  for (const char* quantity : {"9", "1.234,5"}) {
    ASSERT_EQ(grid.editing()->edit(0, column(grid, "Menge"), quantity), "");
    ASSERT_TRUE(dialog->save()) << dialog->notice();
    EXPECT_FALSE(dialog->changed());
  }
  EXPECT_EQ(text("Select Menge From ImportPos"_sql), "1234.5");
}

TEST_F(OrderDialogTest, NumbersThatTheErpCannotHoldAreRefusedAtTheirField) {
  stageOrder("O1");
  stagePriced("O1", 1, "A100", 3, 10);
  stagePriced("O1", 5, "A100", 3, 10);
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  const auto details = grid.editing()->details(0);
  const auto enterInto = [&](std::string_view control, std::string_view text) {
    details->type(*details->find(control), text);
    details->leave(*details->find(control));
    const std::string message =
        details->refused() ? details->control(*details->refused()).message : std::string();
    details->dropRefused(*details->find(control));
    return message;
  };
  const std::string cost = "Eine Kostenzuordnung ist eine ganze Zahl bis 2147483647.";
  EXPECT_EQ(enterInto("tdbnbrKostID", "99999999999"), cost);
  EXPECT_EQ(enterInto("tdbnbrKostID", "1,5"), cost);
  EXPECT_EQ(enterInto("tdbnbrKostID", "2.147.483.647"), "");
  const std::string number = "Eine Positionsnummer ist eine ganze Zahl von 1 bis 32767.";
  EXPECT_EQ(enterInto("txtPositionsnummer", "abc"), "'abc' ist keine Zahl.");
  EXPECT_EQ(enterInto("txtPositionsnummer", "0"), number);
  EXPECT_EQ(enterInto("txtPositionsnummer", "32768"), number);
  EXPECT_EQ(enterInto("txtPositionsnummer", "5"), "Die Positionsnummer 5 gibt es in diesem Auftrag schon.");
  EXPECT_EQ(enterInto("txtPositionsnummer", ""), "Eine Position braucht eine Nummer.");
  EXPECT_EQ(enterInto("txtPositionsnummer", "32767"), "");
  EXPECT_EQ(grid.editing()->edit(0, column(grid, "Menge"), "1e99"), "'1e99' ist zu groß.");
  EXPECT_EQ(grid.editing()->edit(0, column(grid, "Menge"), "1.00"), "'1.00' ist keine Zahl.");
  ASSERT_TRUE(dialog->save()) << dialog->notice();
  EXPECT_EQ(text("Select Positionsnummer || ' ' || KostID From ImportPos Where ChildID = 'P1'"_sql),
            "32767 2147483647");
}

TEST_F(OrderDialogTest, AMissingTableTakesNeitherPositionsNorOtherChecksAlong) {
  stageOrder("O1", {{"Kundennummer", "5"}});
  stagePriced("O1", 1, "GIBTSNICHT", 3, 10);
  set("O1", "ImportType", "20");
  execute("Drop Table Zahlungsarten"_sql);
  const auto dialog = opened("O1");
  EXPECT_EQ(dialog->kind().grid->rowCount(), 1U);
  EXPECT_THAT(codes(*dialog), testing::IsSupersetOf({"AR", "KN"}));
  enter(*dialog, "txtFax", "0431 9");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(field("O1", "Telefax").text(), "0431 9");
  EXPECT_EQ(field("O1", "ImportType").integer(), 20) << "nobody knows what the check would have found";
}

TEST_F(OrderDialogTest, AnAddedPositionIsAsReadyAsTheOptionsSay) {
  erp.setOption("AuftragLieferbereit", "1");
  stageOrder("O1");
  const auto dialog = opened("O1");
  JobGrid& grid = *dialog->kind().grid;
  grid.editing()->addRow();
  EXPECT_EQ(cell(grid, 0, "Lieferbereit"), "1");
  EXPECT_EQ(cell(grid, 0, "Fakturierbereit"), "0");
}

} // namespace
} // namespace qx
