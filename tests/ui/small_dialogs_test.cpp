// Deleting by date and what the about box tells.
#include "support/test_erp.h"
#include "ui/about_box.h"
#include "ui/delete_by_date.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(MonthBefore, IsTheSameDayOrTheLastOneOfAShorterMonth) {
  struct Case {
    Date day;
    Date expected;
  };
  for (const Case& c : {Case{makeDate(2026, 11, 24), makeDate(2026, 10, 24)},
                        Case{makeDate(2026, 1, 15), makeDate(2025, 12, 15)},
                        Case{makeDate(2026, 3, 31), makeDate(2026, 2, 28)},
                        Case{makeDate(2028, 3, 30), makeDate(2028, 2, 29)},
                        Case{makeDate(2026, 12, 31), makeDate(2026, 11, 30)},
                        Case{makeDate(2026, 2, 28), makeDate(2026, 1, 28)}})
    EXPECT_EQ(germanDate(monthBefore(c.day)), germanDate(c.expected)) << germanDate(c.day);
}

class SmallDialogs : public ::testing::Test {
protected:
  TestErp erp;
  ImportJobObject2 engine{erp.environment};
  DeleteByDate deletion{erp.environment, engine};
};

TEST_F(SmallDialogs, TheDayProposedGoesByTheSession) {
  erp.setSessionDate(makeDate(2026, 3, 31));
  EXPECT_EQ(germanDate(deletion.proposedDate()), "28.02.2026");
  erp.environment.session = nullptr;
  EXPECT_EQ(germanDate(deletion.proposedDate()), "24.10.2026") << "the workstation's";
}

TEST_F(SmallDialogs, ADeletionThatFailsIsTold) {
  erp.execute(
      sql("Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('A', 13, '01.01.2026')"_sql));
  erp.execute(sql("Pragma query_only = 1"_sql));
  deletion.deleteBefore(makeDate(2026, 11, 24));
  ASSERT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_EQ(erp.desktop.shown[0].icon, MessageIcon::Critical);
  EXPECT_EQ(erp.desktop.shown[0].text.rfind("Fehler beim Löschen: ", 0), 0U);
}

TEST_F(SmallDialogs, TheSystemInformationNamesDatabaseUserAndDate) {
  EXPECT_EQ(erpVersion(erp.environment), "6.3.0");
  const auto lines = workInformation(erp.environment);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0].value, erp.file);
  EXPECT_NE(lines[1].value.find("KB"), std::string::npos);
  EXPECT_EQ(lines[2].value, "pruefer");
  EXPECT_EQ(lines[3].value, "24.11.2026");
  erp.environment.session = nullptr;
  EXPECT_EQ(informationText({workInformation(erp.environment)[3]}), "Sitzungsdatum: nicht bekannt\n");
}

} // namespace
} // namespace qx
