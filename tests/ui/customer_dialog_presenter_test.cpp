#include "dialog_fixture.h"

#include "ui/address_dialog_presenter.h"

#include <array>
#include <string>
#include <vector>

namespace qx {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class CustomerDialogTest : public DialogTest {
protected:
  /// A job that equals the customer master.
  const Properties asStored{{"Bez1", "Hafenbau GmbH"},
                            {"Strasse", "Am Kai 1"},
                            {"Land", "DE"},
                            {"PLZ", "20457"},
                            {"Ort", "Hamburg"}};
};

TEST_F(CustomerDialogTest, ANewCustomerHasOneFindingAndIsNotCompared) {
  stageCustomer("K1", "99999");
  EXPECT_THAT(findings(*opened("K1")),
              ElementsAre("KN|20|Die Kundennummer: 99999 wurde nicht angelegt. Neukunde!"));
}

TEST_F(CustomerDialogTest, ComparesTheAddressWithTheMasterAndForgetsADifferenceThatIsMended) {
  stageCustomer("K1", "20001", asStored + Properties{{"Bez1", "Hafen GmbH"}, {"Ort", "Kiel"}});
  const auto dialog = opened("K1");
  EXPECT_THAT(findings(*dialog), ElementsAre("BZ1|20|Bezeichnung 1 ist nicht identisch: Hafenbau GmbH",
                                             "ORT|20|Ort ist nicht identisch: Hamburg"));
  enter(*dialog, "txtBez1", "Hafenbau GmbH");
  EXPECT_THAT(codes(*dialog), ElementsAre("ORT"));
  EXPECT_EQ(state(*dialog, "txtBez1").picture, CheckStatus::Clean);
  dialog->takeMaster(indexOf(*dialog, "txtOrt"));
  EXPECT_EQ(state(*dialog, "txtOrt").text, "Hamburg");
  EXPECT_THAT(codes(*dialog), IsEmpty());
}

TEST_F(CustomerDialogTest, WhatTheJobDoesNotSpeakOfIsNoDifferenceAndAnEmptiedFieldIsOne) {
  stageCustomer("K1", "20001", asStored + Properties{{"Telefon", "1"}});
  execute("Update ImportKopf Set Bez1 = Null, Ort = Null, Telefax = Null"_sql);
  const auto dialog = opened("K1");
  EXPECT_THAT(codes(*dialog), IsEmpty());
  enter(*dialog, "txtStrasse", "");
  EXPECT_THAT(findings(*dialog), ElementsAre("STR|20|Straße ist nicht identisch: Am Kai 1"));
  enter(*dialog, "txtTelefon", "");
  EXPECT_TRUE(dialog->save());
  EXPECT_EQ(field("K1", "Strasse"), Value(""));
  EXPECT_EQ(field("K1", "Telefon"), Value(""));
  for (const char* untouched : {"Bez1", "Ort", "Telefax"})
    EXPECT_TRUE(field("K1", ColumnName(std::string_view(untouched))).isNull()) << untouched;
  // And so it comes into the master.
  erp.execute("Update Kundenstamm Set Telefon = '040 1', Telefax = '040 2'"_sql);
  ASSERT_TRUE(engine.ProcessJobs());
  EXPECT_EQ(rows("Select Bez1, Ort, Strasse, Telefon, Telefax From Kundenstamm"_sql),
            (std::vector<std::vector<Value>>{
                {Value("Hafenbau GmbH"), Value("Hamburg"), Value::null(), Value::null(), Value("040 2")}}));
}

TEST_F(CustomerDialogTest, ListsUnknownCodesBanksAndAccountsButNoEmptyOnes) {
  stageCustomer("K1", "20001",
                asStored + Properties{{"Vertreter1", "09"},
                                      {"Versandart", "po"},
                                      {"Zahlungsart", "XX"},
                                      {"ZahlungsbedSchl", "99"},
                                      {"Kundengruppe", "YY"},
                                      {"Preisliste", "Z"},
                                      {"BLZ", "90000001"},
                                      {"Kreditinstitut", "Alte Bank"},
                                      {"Hauptkonto", "4"},
                                      {"Fehlertext", "Grund"}});
  const auto dialog = opened("K1");
  EXPECT_THAT(findings(*dialog),
              ElementsAre("VT|20|Vertreter: 09 wurde noch nicht angelegt.",
                          "ZA|20|Zahlungsart: XX wurde noch nicht angelegt.",
                          "ZB|20|Zahlungsbedingung: 99 wurde noch nicht angelegt.",
                          "KG|20|Kundengruppe: YY wurde noch nicht angelegt.",
                          "PL|20|Preisliste: Z wurde noch nicht angelegt.",
                          "BV|20|Bankverbindung sind nicht identisch: Musterbank",
                          "EP|20|Fehler beim verarbeiten: Grund", "HK|20|Hauptkonto 4 wurde nicht angelegt"));
  // A shown text also selects its code.
  enter(*dialog, "tdbZahlungsart", "Rechnung");
  EXPECT_EQ(state(*dialog, "tdbZahlungsart").text, "RE");
  enter(*dialog, "tdbVertreter1", "");
  enter(*dialog, "txtHauptkonto", "20001");
  dialog->takeMaster(indexOf(*dialog, "txtKreditinstitut"));
  EXPECT_THAT(codes(*dialog), ElementsAre("EP", "KG", "PL", "ZB"));
}

TEST_F(CustomerDialogTest, EachDropDownListOffersTheCodesOfItsOwnTable) {
  const std::vector<std::array<std::string, 4>> lists{
      {"tdbVertreter1", "Vertreter", "VertreterNr", "N1"},
      {"tdbVersandart", "Versandtexte", "Versandart", "N2"},
      {"tdbZahlungsart", "Zahlungsarten", "Zahlungsart", "N3"},
      {"tdbZahlungsbed", "Zahlungsbedingungen", "ZahlbedSchl", "N4"},
      {"tdbKundengruppe", "Kundengruppen", "Kundengruppe", "N5"},
      {"tdbPreisliste", "PreislistenKopf", "Preisliste", "N6"},
      {"tdbWährung", "Währungen", "Währung", "N7"},
      {"tdbWährungEG", "Währungen", "Währung", "N8"}};
  for (const auto& [control, table, column, code] : lists)
    execute(sql("Insert Into "_sql, name(table), " ("_sql, name(column), ") Values ('"_sql, value(code),
                "')"_sql));
  stageCustomer("K1", "20001", asStored);
  const auto dialog = opened("K1");
  for (const auto& [control, table, column, code] : lists) {
    const ComboContent& content = dialog->content(indexOf(*dialog, control));
    std::vector<std::string> codes;
    for (const auto& row : content.rows.rows)
      codes.push_back(row[static_cast<std::size_t>(content.codeColumn)]);
    EXPECT_THAT(codes, Contains(code)) << control;
  }
}

TEST_F(CustomerDialogTest, HintsFollowWhatIsTypedAndDoNotHoldSavingUp) {
  stageCustomer("K1", "20001", asStored + Properties{{"ZahlungsbedSchl", "99"}});
  const std::string unwritten = "Nicht in den Kundenstamm übernommen: ZahlungsbedSchl '99'";
  const auto dialog = opened("K1");
  const auto list = dialog->findings();
  EXPECT_EQ(list.front().code(), "ZB");
  EXPECT_EQ(list.back().text(), unwritten) << "behind the findings";
  EXPECT_EQ(list.back().found.severity, CheckStatus::Clean);
  EXPECT_TRUE(dialog->nothingNewSince({list.front()}));
  enter(*dialog, "tdbZahlungsbed", "");
  EXPECT_THAT(hints(*dialog), Not(Contains(unwritten)));
  EXPECT_THAT(hints(*dialog), Not(IsEmpty()));
  EXPECT_FALSE(dialog->canRelease());
}

TEST_F(CustomerDialogTest, ChecksWhereGoodsAndInvoicesGo) {
  add("Adressenstamm",
      {{"Kundennummer", "20001"}, {"Adressnummer", "2"}, {"Bez1", "Lager"}, {"Ort", "Bremen"}});
  stageCustomer("K1", "20001",
                asStored + Properties{{"VS_AdrNr", "2"},
                                      {"VS_Bez1", "Lager Süd"},
                                      {"VS_Ort", "Bremen"},
                                      {"RG_KdNr", "77777"}});
  const auto dialog = opened("K1");
  EXPECT_THAT(findings(*dialog), ElementsAre("RG|30|Rechnung an wurde nicht angelgt",
                                             "VA|20|Versandadresse ist nicht identisch: Lager, Bremen"));
  // Choosing an address of the customer fills both parts of its key.
  chosen = {"20001", "2"};
  enter(*dialog, "txtRechnungKdnr", "");
  EXPECT_TRUE(dialog->lookUp(indexOf(*dialog, "txtRechnungAdr")));
  EXPECT_EQ(state(*dialog, "txtRechnungAdr").text, "2");
  EXPECT_THAT(lookupsOpened, Contains("AUSK_Adressauskunft|Kundennummer='20001' or Kundennummer is null"));
  EXPECT_THAT(codes(*dialog), ElementsAre("VA"));
  // One of no customer has no key that a check knows; the job takes its lines.
  add("Adressenstamm", {{"Adressnummer", "MESSE"}, {"Bez1", "Messe"}, {"Ort", "Köln"}});
  chosen = {"", "MESSE"};
  EXPECT_TRUE(dialog->lookUp(indexOf(*dialog, "txtVersandAdr")));
  EXPECT_THAT(codes(*dialog), ElementsAre());
  EXPECT_TRUE(dialog->save());
  EXPECT_EQ(field("K1", "VS_AdrNr").text() + "|" + field("K1", "VS_Bez1").text() + "|" +
                field("K1", "VS_Ort").text(),
            "|Messe|Köln");
}

TEST_F(CustomerDialogTest, WhatTheJobBringsAlongOrTheBankCodeGivesIsNoFinding) {
  stageCustomer("K1", "20009",
                {{"VS_KdNr", "20009"}, {"VS_AdrNr", "5"}, {"VS_Bez1", "Lager Süd"}, {"BLZ", "90000001"}});
  set("K1", "BLZ", "90000001");
  const auto dialog = opened("K1");
  EXPECT_THAT(codes(*dialog), ElementsAre("KN"));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Clean) << "a new customer is no fault";
  enter(*dialog, "txtKreditinstitut", "Sparbank");
  EXPECT_THAT(codes(*dialog), ElementsAre("BV", "KN"));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Clean);
  // Without lines there is no address to create.
  const auto addresses = dialog->kind().addresses->addresses();
  addresses->type(*addresses->find("txtVS_Bez1"), "");
  dialog->kind().addresses->takeAddresses(*addresses);
  ASSERT_TRUE(dialog->save());
  EXPECT_THAT(codes(*dialog), ElementsAre("BV", "KN", "VS"));
  EXPECT_EQ(field("K1", "ImportType").integer(), 30);
}

TEST_F(CustomerDialogTest, ParkedContractsOfTheCustomerAreToldAndCountUntilTheyAreMended) {
  stageCustomer("K1", "20001", asStored);
  stageContract("C1", {{"JobType", 42}});
  const auto dialog = opened("K1");
  EXPECT_THAT(findings(*dialog), ElementsAre("KVF|30|Im Kundenvertrag wurden ''Fehler'' festgestellt."));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Error);
  // Saving checks the contract, which has no fault.
  ASSERT_TRUE(dialog->save());
  EXPECT_THAT(findings(*dialog), IsEmpty());
  EXPECT_EQ(dialog->verdict(), CheckStatus::Clean);
  EXPECT_EQ(field("K1", "ImportType").integer(), 10);
  EXPECT_EQ(jobType("C1"), 40);
}

TEST_F(CustomerDialogTest, DifferencesFromTheMasterCountWhereTheCheckComparesThem) {
  stageCustomer("K1", "20001", asStored + Properties{{"Ort", "Kiel"}});
  EXPECT_EQ(opened("K1")->verdict(), CheckStatus::Clean);
  erp.setOption("KundeAdressProof", "1");
  const auto dialog = opened("K1");
  EXPECT_EQ(dialog->verdict(), CheckStatus::Warning);
  enter(*dialog, "txtOrt", "Hamburg");
  EXPECT_EQ(dialog->verdict(), CheckStatus::Clean) << "what is shown is checked, not what is stored";
  enter(*dialog, "txtStrasse", "");
  EXPECT_EQ(dialog->verdict(), CheckStatus::Warning) << "an emptied field empties that of the master";
  enter(*dialog, "txtStrasse", "Am Kai 1");
  // The number of the address is compared as well, for which the dialog has no line of its own.
  const auto addresses = dialog->kind().addresses->addresses();
  addresses->type(*addresses->find("txtVS_Bez1"), "Lager");
  addresses->type(*addresses->find("txtVS_Ort"), "Bremen");
  addresses->type(*addresses->find("txtVS_AdrNr"), "2");
  dialog->kind().addresses->takeAddresses(*addresses);
  EXPECT_THAT(findings(*dialog),
              Contains("PB|20|VS_AdrNr ist nicht identisch: '2' / ''; VS_Bez1 ist nicht identisch: "
                       "'Lager' / ''; VS_Ort ist nicht identisch: 'Bremen' / ''"));
  EXPECT_EQ(dialog->verdict(), CheckStatus::Warning);
}

TEST_F(CustomerDialogTest, SavesWhatTheClerkChangedAndKeepsTheRest) {
  stageCustomer("K1", "20001", asStored + Properties{{"VS_Ort", "Bremen"}, {"EMail", "x@example.org"}});
  const auto dialog = opened("K1");
  EXPECT_FALSE(dialog->changed());
  enter(*dialog, "txtPLZ", "20459");
  enter(*dialog, "txtBlz", "90000002");
  enter(*dialog, "txtHinweis", "Erste Zeile\nzweite");
  enter(*dialog, "txtTelefon", std::string(10000, '7'));
  const auto addresses = dialog->kind().addresses->addresses();
  addresses->type(*addresses->find("txtVS_Ort"), "Kiel");
  dialog->kind().addresses->takeAddresses(*addresses);
  EXPECT_TRUE(dialog->changed());
  dialog->release(true);
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(fields("K1", {"PLZ", "BLZ", "Bemerkung"}), "20459|90000002|Erste Zeile\nzweite");
  EXPECT_EQ(field("K1", "Telefon").text().size(), 10000U);
  EXPECT_EQ(fields("K1", {"VS_Ort", "EMail", "ProcessWarning"}), "Kiel|x@example.org|1");
  EXPECT_EQ(jobType("K1"), 10);
}

TEST_F(CustomerDialogTest, RaisesItsImportTypeToTheWorstOfTheContractsThatCameWithIt) {
  stageCustomer("K1", "20001", asStored);
  stageContract("C1", {{"JobType", 41}, {"Menge", 0}});
  stageContract("C2", {{"JobType", 43}, {"Vertragsnummer", "V2"}});
  set("C2", "Status", "30");
  const auto dialog = opened("K1");
  ASSERT_NE(dialog->kind().grid, nullptr);
  EXPECT_EQ(dialog->kind().grid->rowCount(), 2U);
  EXPECT_EQ(dialog->kind().grid->cell(0, 0).bitmap, "CONTRACT_NEW");
  EXPECT_EQ(dialog->kind().grid->jobs()->jobOf(0).jobType, 41);
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(field("K1", "ImportType").integer(), 20);
  EXPECT_EQ(field("C1", "ImportType").integer(), 20);
}

TEST_F(CustomerDialogTest, ListsStoredContractsThatTheImportNoLongerCarries) {
  stageCustomer("K1", "20001", asStored);
  erp.execute("Insert Into Verträge (Kundennummer, Vertragsnummer, VertrGegenstandsNr, Vertragsart, Zustand) "
              "Values ('20001', 'V9', 'G1', 'WA', 'A')"_sql);
  const auto dialog = opened("K1");
  ASSERT_EQ(dialog->kind().grid->rowCount(), 1U);
  EXPECT_EQ(dialog->kind().grid->cell(0, 0).bitmap, "CONTRACT_DELETE");
  EXPECT_EQ(dialog->kind().grid->cell(0, 0).message, "Gelöschter Vertrag");
  EXPECT_EQ(dialog->kind().grid->cell(0, 2).text, "V9");
  EXPECT_EQ(opened("K1")->kind().grid->rowCount(), 1U) << "marked once";
}

TEST_F(CustomerDialogTest, SavingChecksTheContractsThatCameWithIt) {
  stageCustomer("K1", "20001", asStored);
  stageContract("C1", {{"JobType", 40}, {"Vertragsdatum", ""}});
  ASSERT_TRUE(opened("K1")->save());
  EXPECT_EQ(jobType("C1"), 42);
  EXPECT_NE(field("C1", "Fehlertext").text().find("Vertragsdatum ist falsch\r\n"), std::string::npos);
}

TEST_F(CustomerDialogTest, OffersTheReleaseOfAParkedJobWhenItIsSaved) {
  stageCustomer("K1", "20001", asStored);
  set("K1", "JobType", "11");
  const auto refused = opened("K1");
  EXPECT_TRUE(refused->canRelease());
  ASSERT_TRUE(refused->save());
  EXPECT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_NE(field("K1", "ProcessWarning").integer(), 1);
  erp.desktop.answer = true;
  ASSERT_TRUE(opened("K1")->save());
  EXPECT_EQ(field("K1", "ProcessWarning").integer(), 1);
  // The code is changed by the next run.
  EXPECT_EQ(jobType("K1"), 11);
}

TEST_F(CustomerDialogTest, ToldOfADatabaseThatIsGoneItKeepsTheInput) {
  stageCustomer("K1", "20001", asStored);
  const auto dialog = opened("K1");
  execute("Drop Table Kundenstamm"_sql);
  enter(*dialog, "txtKundennummer", "20002");
  EXPECT_NE(dialog->notice(), "");
  EXPECT_FALSE(erp.diagnostics.entries.empty());
  EXPECT_EQ(state(*dialog, "txtKundennummer").text, "20002");
}

TEST_F(CustomerDialogTest, AnAddressThatCannotBeStoredLeavesTheHeaderAsItWas) {
  stageCustomer("K1", "20001", asStored);
  const auto dialog = opened("K1");
  enter(*dialog, "txtFax", "0431 9");
  const auto addresses = dialog->kind().addresses->addresses();
  addresses->type(*addresses->find("txtVS_Ort"), "Kiel");
  dialog->kind().addresses->takeAddresses(*addresses);
  execute("Create Trigger kein_ort Before Update Of VS_Ort On ImportKopf "
          "Begin Select Raise(Abort, 'no'); End"_sql);
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(erp.desktop.shown.back().text, "Fehler beim Update der Daten");
  EXPECT_EQ(dialog->notice(), "Fehler beim Update der Daten: Die Datenbank hat das abgelehnt.");
  EXPECT_NE(field("K1", "Telefax").text(), "0431 9");
  EXPECT_TRUE(dialog->changed());
  execute("Drop Trigger kein_ort"_sql);
  EXPECT_TRUE(dialog->save()) << "nothing of the first try is in the way";
  EXPECT_EQ(fields("K1", {"Telefax", "VS_Ort"}), "0431 9|Kiel");
}

TEST_F(CustomerDialogTest, TakesItsContractsAlongToAnotherNumberWhenTheClerkSaysSo) {
  stageCustomer("K1", "70301");
  const auto stageTheirs = [&](std::string_view jobId, std::int16_t code) {
    stageContract(jobId, {{"Kundennummer", "70301"}, {"JobType", code}});
  };
  stageTheirs("C1", 40);
  stageTheirs("C2", 42);
  stageTheirs("C3", 43);
  const auto kept = opened("K1");
  enter(*kept, "txtKundennummer", "79555");
  ASSERT_TRUE(kept->save());
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(erp.desktop.asked[0].text, "2 Verträge sind mit der Kundennummer 70301 eingegangen.\r\n"
                                       "Sollen sie auf 79555 umgestellt werden?");
  EXPECT_EQ(field("C1", "Kundennummer").text(), "70301");
  const auto back = opened("K1");
  enter(*back, "txtKundennummer", "70301");
  ASSERT_TRUE(back->save());
  erp.desktop.answer = true;
  const auto moved = opened("K1");
  enter(*moved, "txtKundennummer", " 79555 ");
  ASSERT_TRUE(moved->save());
  EXPECT_EQ(field("K1", "Kundennummer").text(), "79555");
  EXPECT_EQ(field("C1", "Kundennummer").text(), "79555");
  EXPECT_EQ(field("C2", "Kundennummer").text(), "79555");
  EXPECT_EQ(field("C3", "Kundennummer").text(), "70301") << "done";
}

TEST_F(CustomerDialogTest, ARowThatAnotherProgramHasChangedIsNeverMixedWithWhatIsShown) {
  stageCustomer("K1", "20001", asStored);
  const auto dialog = opened("K1");
  enter(*dialog, "txtStrasse", "Weg 2");
  set("K1", "EMail", "neu@example.org");
  erp.desktop.answer = true;
  EXPECT_FALSE(dialog->save());
  EXPECT_TRUE(dialog->readAnewAsked());
  EXPECT_NE(field("K1", "Strasse").text(), "Weg 2");
}

TEST_F(CustomerDialogTest, NothingIsSavedWhileAnotherUserHoldsTheLock) {
  stageCustomer("K1", "20001", asStored);
  ASSERT_EQ(engine.importLock().take().state, LockState::Taken);
  const auto dialog = opened("K1");
  enter(*dialog, "txtFax", "0431 9");
  execute("Update LockControl Set Benutzer = 'erika', SessionID = 'andere'"_sql);
  EXPECT_FALSE(dialog->save());
  EXPECT_NE(field("K1", "Telefax").text(), "0431 9");
  EXPECT_THAT(erp.desktop.texts(), testing::HasSubstr("von Benutzer 'erika'"));
  execute("Delete From LockControl"_sql);
  EXPECT_TRUE(dialog->save());
  EXPECT_TRUE(engine.importLock().holder()) << "taken again";
}

TEST_F(CustomerDialogTest, TheDialogIsChosenByTheCodeThatTheJobHasNow) {
  stageCustomer("K1", "20001", asStored);
  execute("Update ImportKopf Set JobType = 30"_sql);
  const auto dialog = openJobDialog(context, "K1");
  ASSERT_TRUE(dialog);
  EXPECT_THAT(dialog->title(), testing::StartsWith("Auftrag von Kunde 20001"));
  execute("Update ImportKopf Set JobType = 0"_sql);
  EXPECT_FALSE(openJobDialog(context, "K1"));
  EXPECT_EQ(erp.desktop.texts(), "Zu dieser Art von Vorgang gibt es keinen Dialog.\n");
}

} // namespace
} // namespace qx
