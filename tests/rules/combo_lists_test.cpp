#include "rules/combo_lists.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

#include <optional>

using namespace qx;

namespace {

class RecordedCombo final : public ComboTarget {
public:
  void setRowSource(ComboRows rows) override { source = std::move(rows); }
  void hideColumn(int index) override { hidden = index; }
  void setColumnHeaders(bool shown) override { headers = shown; }
  void setBookmark(std::size_t row) override { bookmark = row; }

  std::optional<ComboRows> source;
  int hidden = -1;
  bool headers = true;
  std::optional<std::size_t> bookmark;
};

class ComboListsTest : public ::testing::Test {
protected:
  void insert(const Sql& statement) { erp.connection().execute(statement); }

  ErpFile erp;
  ComboLists lists{erp.environment};
  RecordedCombo combo;
};

} // namespace

TEST_F(ComboListsTest, AnEmptyTableLeavesTheListAlone) {
  EXPECT_FALSE(lists.FillComboVersandart(combo, "POST"));
  EXPECT_FALSE(combo.source);
  EXPECT_TRUE(combo.headers);
}

TEST_F(ComboListsTest, SelectsTheCurrentCodeAsTheDatabaseCompares) {
  insert(sql(
      "Insert Into Versandtexte (Versandart, Kurztext) Values ('BOTE','Bote'), ('Post','Paketpost')"_sql));
  EXPECT_TRUE(lists.FillComboVersandart(combo, "POST"));
  ASSERT_TRUE(combo.source);
  EXPECT_EQ(combo.source->rows[1], (std::array<std::string, 2>{"Paketpost", "Post"}));
  EXPECT_EQ(combo.bookmark, 1U);
  EXPECT_EQ(combo.hidden, 1);
  EXPECT_FALSE(combo.headers);
}

TEST_F(ComboListsTest, TheExactSpellingWinsAndANullCodeIsNoCode) {
  insert(sql("Drop Table Versandtexte"_sql));
  insert(sql("Create Table Versandtexte (Versandart, Kurztext)"_sql));
  insert(sql("Insert Into Versandtexte Values (null, 'ohne'), ('pO', 'klein'), ('PO', 'groß')"_sql));
  EXPECT_TRUE(lists.FillComboVersandart(combo, "PO"));
  EXPECT_EQ(combo.bookmark, 2U);
  RecordedCombo empty;
  EXPECT_FALSE(lists.FillComboVersandart(empty, ""));
  EXPECT_EQ(empty.source->rows.size(), 3U);
}

TEST_F(ComboListsTest, AnUnknownCodeFillsTheListAndSelectsNothing) {
  insert(sql("Insert Into Kundengruppen (Kundengruppe, Langtext) Values ('A','Großkunden')"_sql));
  EXPECT_FALSE(lists.FillComboKundengruppe(combo, "Großkunden"));
  ASSERT_TRUE(combo.source);
  EXPECT_FALSE(combo.bookmark);
}

TEST_F(ComboListsTest, ContractKindsShowTheCodeAndHideTheText) {
  insert(sql("Insert Into Vertragsarten (Vertragsart, Kurztext) Values ('W','Wartung')"_sql));
  EXPECT_TRUE(lists.FillComboVertragsart(combo, "W"));
  EXPECT_EQ(combo.source->rows[0], (std::array<std::string, 2>{"W", "Wartung"}));
  EXPECT_EQ(combo.hidden, 1);
}

TEST_F(ComboListsTest, RepsShowWithoutASecondNameInTheOrderOfTheirNumbers) {
  insert(sql(
      "Insert Into Vertreter (VertreterNr, Bez1, Bez2) Values ('20','Berg',null), ('10','Ahl','KG')"_sql));
  EXPECT_TRUE(lists.FillComboVertreter(combo, "20"));
  EXPECT_EQ(combo.source->rows, (std::vector<std::array<std::string, 2>>{{"Ahl KG", "10"}, {"Berg ", "20"}}));
  EXPECT_EQ(combo.bookmark, 1U);
}

TEST_F(ComboListsTest, TermsOfPaymentShowTheirSentence) {
  insert(sql("Insert Into Zahlungsbedingungen (ZahlbedSchl, SkontoTage1, SkontoProzent1, NettoTage) "
             "Values ('30', 10, 2.5, 30), ('00', null, null, null)"_sql));
  EXPECT_TRUE(lists.FillComboZahlungsbed(combo, "30"));
  EXPECT_EQ(combo.source->rows, (std::vector<std::array<std::string, 2>>{
                                    {"sofort rein Netto.", "00"}, {"10 Tage 2,5%, 30 Tage netto", "30"}}));
}
