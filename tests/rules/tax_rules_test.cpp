#include "rules/tax_rules.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class TaxRulesTest : public ::testing::Test {
protected:
  void SetUp() override {
    erp.execute("Insert Into Steuerschlüsselzuordnung (MwStKZKunde, MwStKZArtikel, "
                "Steuerschlüssel, SteuerschlüsselNeu) Values ('I','V',3,9), ('I','X',99999,null)"_sql);
    erp.execute("Insert Into Steuerschlüssel (Steuerschlüssel, MwSt_Satz) Values (90,19.5)"_sql);
  }

  ErpFile erp;
  TaxRules tax{erp.environment};
};

} // namespace

TEST_F(TaxRulesTest, TheNewKeyHoldsFromTheDayOfTheChange) {
  const struct {
    std::string_view change, date;
    std::int16_t expected;
  } cases[] = {
      {"", "20991231000000", 3},
      {"  ", "20991231000000", 3},
      {"20070101000000", "20061231235959", 3},
      {"20070101000000", "20070101000000", 9},
      {"20070101120000", "20070101000000", 9},
      {"20070101000000", "20070101235959", 9},
      {"20070101000000", "", 3},
      {"20070101000000", "   ", 3},
      {"20070101000000", "2007", 3}, // compared as texts
      {"01.01.2007", "20061231000000", 3},
      {"01.01.2007", "20070101000000", 9},
      {"bald", "20991231000000", 3},
  };
  for (const auto& c : cases) {
    erp.set("DatumMwStÄnderung", c.change, "Allgemein");
    EXPECT_EQ(tax.GetSteuerschlüssel("I", "V", c.date), c.expected) << c.change << " / " << c.date;
  }
  EXPECT_EQ(erp.diagnostics.text(), "change of tax rates | 'bald' is not a day and is not used | \n");
  EXPECT_EQ(tax.keyOf("I", "V", "20260101000000", "20260101"), 9) << "whatever the setting";
  erp.session->failing = true;
  EXPECT_THROW(tax.GetSteuerschlüssel("I", "V", "20260101000000"), StoreError);
  EXPECT_EQ(tax.GetSteuerschlüssel("I", "V", ""), 3);
}

TEST_F(TaxRulesTest, APairWithoutAUsableKeyRaises) {
  EXPECT_THROW(tax.GetSteuerschlüssel("I", "Z", ""), MissingTaxKey);
  EXPECT_THROW(tax.GetSteuerschlüssel("I", "X", ""), MissingTaxKey);
  erp.set("DatumMwStÄnderung", "20070101", "Allgemein");
  EXPECT_THROW(tax.GetSteuerschlüssel("I", "X", "20070101"), MissingTaxKey);
}

TEST_F(TaxRulesTest, AnUnknownKeyHasTheRateZeroAndARateThatIsNoNumberRaises) {
  EXPECT_EQ(tax.GetSteuerSatz("90"), 19.5);
  EXPECT_EQ(tax.GetSteuerSatz("91"), 0);
  erp.execute("Insert Into Steuerschlüssel (Steuerschlüssel, MwSt_Satz) Values (92,null), (93,'7,5')"_sql);
  EXPECT_THROW(tax.GetSteuerSatz("92"), MissingTaxRate);
  EXPECT_THROW(tax.GetSteuerSatz("93"), MissingTaxRate);
}
