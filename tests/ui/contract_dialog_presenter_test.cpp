#include "dialog_fixture.h"

namespace qx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ContractDialogTest : public DialogTest {};

TEST_F(ContractDialogTest, ListsEveryFaultOfTheFieldsWithItsCodeAndPicture) {
  stageContract("C1", {{"Menge", 0},
                       {"Artikelnummer", "G9"},
                       {"Vertragsart", "X"},
                       {"Vertragsdatum", ""},
                       {"Vertragsbeginn", ""},
                       {"Zustand", "X"},
                       {"Intervall", 2},
                       {"Fehlertext", "Alt"}});
  set("C1", "Vertragsdatum", "");
  const auto dialog = opened("C1");
  EXPECT_THAT(
      findings(*dialog),
      ElementsAre("VGG|30|Vertragsgegenstand: G9 wurde nicht angelegt.",
                  "VD|30|Vertragsdatum wurde nicht angegeben", "VB|30|Vertragsbeginn wurde nicht angegeben",
                  "ME|20|Die Menge muss mindestens 1 betragen.",
                  "VA|20|Die Vertragsart: X ist noch nicht angelegt.", "EP|20|Fehler beim verarbeiten: Alt",
                  "ZD|20|Zustand konnte nicht ermittelt werden.", "INT|20|Intervall: 2 nicht zulässig!"));
  EXPECT_EQ(state(*dialog, "tdbAnzahl").message, "Die Menge muss mindestens 1 betragen!");
  EXPECT_EQ(state(*dialog, "txtVertragsgegenstand").picture, CheckStatus::Error);
  EXPECT_FALSE(dialog->content(indexOf(*dialog, "cboZustand")).selected);
}

TEST_F(ContractDialogTest, MendedFieldsLoseTheirFindingsAndTheJobWaitsAgainAfterSaving) {
  stageContract("C1", {{"Menge", 0}, {"Artikelnummer", "G9"}});
  set("C1", "JobType", "22");
  const auto dialog = opened("C1");
  enter(*dialog, "tdbAnzahl", " 2,50 ");
  EXPECT_EQ(state(*dialog, "tdbAnzahl").text, "2,5");
  chosen = {"G1"};
  EXPECT_TRUE(dialog->lookUp(indexOf(*dialog, "txtVertragsgegenstand")));
  EXPECT_EQ(state(*dialog, "txtVertragsgegenstand").description, "Kassenwartung");
  EXPECT_THAT(findings(*dialog), IsEmpty());
  enter(*dialog, "cboZustand", "nur Info");
  enter(*dialog, "cboIntervall", "3");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(jobType("C1"), 20);
  EXPECT_EQ(fields("C1", {"Menge", "Artikelnummer", "Zustand", "Intervall", "Status", "ImportType"}),
            "2.5|G1|I|3|10|10");
  EXPECT_FALSE(dialog->changed());
}

TEST_F(ContractDialogTest, SavingWithFindingsParksTheContractWithTheReasonsOfTheCheck) {
  stageContract("C1");
  const auto dialog = opened("C1");
  enter(*dialog, "txtVertragsgegenstand", "G9");
  enter(*dialog, "tdbAnzahl", "0");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(outcomeOf("C1"), "22|Menge ist faslch\r\nVertragsgegenstand ist nicht angelegt\r\n");
  EXPECT_EQ(fields("C1", {"Status", "ImportType"}), "30|30");
}

TEST_F(ContractDialogTest, WhatTheRunWritesAnywayIsToldAndParksNothing) {
  stageContract("C1", {{"Intervall", 2}});
  set("C1", "Zustand", "");
  const auto dialog = opened("C1");
  EXPECT_THAT(findings(*dialog), ElementsAre("ZD|20|Zustand konnte nicht ermittelt werden.",
                                             "INT|20|Intervall: 2 nicht zulässig!"));
  enter(*dialog, "txtVertragstext", "neu");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(jobType("C1"), 20);
  EXPECT_EQ(field("C1", "Status").integer(), 10);
  EXPECT_TRUE(field("C1", "Fehlertext").isNull());
}

TEST_F(ContractDialogTest, DatesAndStatesAreReadAsTheRunReadsThem) {
  stageContract("C1");
  set("C1", "Vertragsdatum", "31.02.2026");
  set("C1", "Vertragsbeginn", "12:00:00 AM");
  set("C1", "Zustand", "a");
  const auto dialog = opened("C1");
  EXPECT_THAT(findings(*dialog),
              ElementsAre("VD|30|Vertragsdatum ist falsch", "VB|30|Vertragsbeginn ist falsch",
                          "ZD|20|Zustand konnte nicht ermittelt werden."));
  enter(*dialog, "cboZustand", "Aktiv");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(field("C1", "Zustand").text(), "A");
  EXPECT_EQ(jobType("C1"), 22);
  EXPECT_EQ(field("C1", "Status").integer(), 30);
  EXPECT_EQ(reasons("C1"), "Vertragsdatum ist falsch\r\nVertragsbeginn ist falsch\r\n");
}

TEST_F(ContractDialogTest, AContractInAPositionIsShownCheckedAndChangedThere) {
  stageContract("C1", {{"Menge", 0}, {"Artikelnummer", ""}, {"Vertragsart", ""}});
  const Properties inPosition{{"Preis", 35}, {"ChildID", "P1"}};
  stagePosition("C1", 2, "G1", 4, inPosition);
  execute("Update ImportPos Set Vertragsart = 'W'"_sql);
  stagePosition("C1", 1, "G9", 9);
  const auto dialog = opened("C1");
  EXPECT_THAT(findings(*dialog), IsEmpty());
  EXPECT_EQ(state(*dialog, "tdbAnzahl").text, "4");
  EXPECT_EQ(state(*dialog, "txtVertragsgegenstand").description, "Kassenwartung");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(jobType("C1"), 20) << "a good contract is not spoilt";
  EXPECT_TRUE(field("C1", "Fehlertext").isNull());
  EXPECT_EQ(field("C1", "Menge").number(), 0) << "nor touched";
  // The next run takes over the values of the position.
  enter(*dialog, "tdbAnzahl", "6");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(rows("Select Menge From ImportPos Where ChildID = 'P1'"_sql)[0][0].number(), 6);
  EXPECT_EQ(count("Select Count(*) From ImportPos Where Menge = 9"_sql), 1) << "the first one only";
  EXPECT_EQ(dialog->verdict(), CheckStatus::Clean);
  enter(*dialog, "txtVertragsgegenstand", "G9");
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(jobType("C1"), 22);
  EXPECT_EQ(engine.checkJob("C1").status(), CheckStatus::Error);
}

TEST_F(ContractDialogTest, OpensDoneAndDeletedContractsForReadingOnly) {
  for (const char* code : {"23", "43", "44"}) {
    stageContract("C1");
    set("C1", "JobType", code);
    const auto dialog = opened("C1");
    EXPECT_TRUE(dialog->readOnly());
    EXPECT_NE(dialog->readOnlyReason(), "");
    enter(*dialog, "txtVertragstext", "neu");
    EXPECT_FALSE(dialog->changed());
    EXPECT_FALSE(dialog->save());
    EXPECT_FALSE(dialog->erase());
  }
}

TEST_F(ContractDialogTest, RefusesTextsThatAreNoNumberOrDateAndKeepsThem) {
  stageContract("C1");
  const auto dialog = opened("C1");
  enter(*dialog, "tdbBetrag", "zwölf");
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(dialog->notice(), "Betrag: 'zwölf' ist keine Zahl. Bitte berichtigen Sie das Feld.");
  EXPECT_EQ(state(*dialog, "tdbBetrag").text, "zwölf");
  enter(*dialog, "tdbBetrag", "12,40");
  enter(*dialog, "tdbdtVertragsende", "31.2.2027");
  EXPECT_FALSE(dialog->save());
  enter(*dialog, "tdbdtVertragsende", "1.3.27");
  EXPECT_EQ(state(*dialog, "tdbdtVertragsende").text, "01.03.2027");
  EXPECT_TRUE(dialog->save());
  EXPECT_EQ(field("C1", "Vertragsende").text(), "01.03.2027");
}

TEST_F(ContractDialogTest, DeletesTheHeaderOnlyAfterAYes) {
  stageContract("C1");
  stagePosition("C1", 1, "A100", 1);
  const auto dialog = opened("C1");
  EXPECT_FALSE(dialog->erase());
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(erp.desktop.asked[0].title, "Wirklich löschen?");
  erp.desktop.answer = true;
  EXPECT_TRUE(dialog->erase());
  EXPECT_EQ(count("Select Count(*) From ImportKopf"_sql), 0);
  EXPECT_EQ(count("Select Count(*) From ImportPos"_sql), 1);
}

TEST_F(ContractDialogTest, NeverSetsBackAJobThatWasProcessedMeanwhile) {
  stageContract("C1");
  const auto dialog = opened("C1");
  enter(*dialog, "txtVertragstext", "neu");
  set("C1", "JobType", "23");
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(jobType("C1"), 23);
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(erp.desktop.asked[0].text,
            "Der Vorgang wurde inzwischen von anderer Seite geändert. Es wurde nichts gespeichert.\r\n"
            "Soll er neu gelesen werden? Ihre Eingaben gehen dabei verloren.");
  EXPECT_EQ(dialog->loss(), JobLoss::Changed);
  EXPECT_FALSE(dialog->readAnewAsked());
  EXPECT_TRUE(dialog->changed());
  execute("Delete From ImportKopf"_sql);
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(dialog->loss(), JobLoss::Gone);
  EXPECT_EQ(dialog->notice(), "Der Vorgang ist nicht mehr vorhanden.");
  EXPECT_EQ(erp.desktop.texts(), "Der Vorgang ist nicht mehr vorhanden.\n");
}

TEST_F(ContractDialogTest, NeverDeletesAJobThatAnotherProgramHasChanged) {
  stageContract("C1");
  const auto dialog = opened("C1");
  set("C1", "Preis", "99");
  erp.desktop.answer = true;
  EXPECT_FALSE(dialog->erase());
  EXPECT_EQ(jobType("C1"), 20);
  EXPECT_TRUE(dialog->readAnewAsked());
}

TEST_F(ContractDialogTest, ACleanContractKeepsItsReasonsNullAndAKindIsKnownByItsText) {
  stageContract("C1", {{"Vertragsart", "?"}});
  const auto dialog = opened("C1");
  enter(*dialog, "tdbVertragsart", "wartung");
  EXPECT_EQ(state(*dialog, "tdbVertragsart").text, "W");
  EXPECT_THAT(findings(*dialog), IsEmpty());
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(field("C1", "Vertragsart").text(), "W");
  EXPECT_TRUE(field("C1", "Fehlertext").isNull());
}

TEST_F(ContractDialogTest, AFailedLookupTakesNoOtherCheckAlongAndLeavesTheCodeAsItIs) {
  stageContract("C1", {{"Menge", 0}, {"Zustand", "Z"}, {"JobType", 21}});
  execute("Drop Table Vertragsgegenstände"_sql);
  const auto dialog = opened("C1");
  EXPECT_THAT(codes(*dialog), ElementsAre("ME", "ZD"));
  EXPECT_EQ(dialog->notice(), "Die Prüfung ist nicht möglich: Die Datenbank hat das abgelehnt.");
  enter(*dialog, "txtVertragstext", "  neu ");
  ASSERT_TRUE(dialog->save()) << dialog->notice();
  EXPECT_EQ(field("C1", "Vertragstext").text(), "neu");
  EXPECT_EQ(jobType("C1"), 21);
  EXPECT_NE(field("C1", "Status").integer(), 20);
}

} // namespace
} // namespace qx
