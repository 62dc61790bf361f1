// Settings on the stores of the standalone installation.
#include "settings/settings.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(SharedStore, KeepsValuesForEveryOtherWorkstation) {
  TestErp erp;
  const Settings settings(erp.environment);
  settings.save(applicationName, "ImportJob2", "GelöschteVerträge", "1");
  settings.save("ImportJob", "ImportJob2", "GelöschteVerträge", "0");
  EXPECT_EQ(settings.get(applicationName, "ImportJob2", "GelöschteVerträge"), "0")
      << "the last writer wins, whatever the application";
  const auto other = erp.secondConnection();
  const auto rows = other->open(sql("Select Value From Einstellungen Where Key = 'GelöschteVerträge'"_sql));
  ASSERT_EQ(rows->recordCount(), 1U);
  EXPECT_EQ(rows->text("Value"), "0");
  EXPECT_TRUE(erp.diagnostics.entries.empty()) << erp.diagnostics.text();
}

TEST(SharedStore, TakesAKeyThatAnotherWorkstationHasStoredInTheSameMoment) {
  TestErp erp;
  erp.execute("Create Trigger Vorher Before Insert On Einstellungen When new.Value = 'eigener' Begin "
              "Insert Into Einstellungen (Section, Key, Value) Values (new.Section, new.Key, 'fremder'); "
              "End"_sql);
  const Settings settings(erp.environment);
  settings.save(applicationName, "ImportJob2", "ZAVSRG", "eigener");
  EXPECT_EQ(settings.get(applicationName, "ImportJob2", "ZAVSRG"), "eigener") << "the last writer wins";
  EXPECT_TRUE(erp.diagnostics.entries.empty()) << erp.diagnostics.text();
}

TEST(SharedStore, ThatIsBrokenCostsTheValueAndIsTold) {
  TestErp erp;
  const Settings settings(erp.environment);
  erp.execute("Drop Table Einstellungen"_sql);
  settings.save(applicationName, "ImportJob2", "NewMail", "1");
  EXPECT_EQ(settings.get(applicationName, "ImportJob2", "NewMail"), "");
  EXPECT_EQ(erp.diagnostics.entries.size(), 2U) << erp.diagnostics.text();
}

} // namespace
} // namespace qx
