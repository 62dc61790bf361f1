#include "ui/finding_list.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(FindingList, KeepsOneFindingPerCodeAndPositionAndListsTheWorstFirst) {
  FindingList list;
  list.report({"VT", "", CheckStatus::Warning, "Vertreter", "tdbVertreter1", ""});
  list.report({"LB", "P1", CheckStatus::Warning, "Lager 1", "TDBGrid1", ""});
  list.report({"VS", "", CheckStatus::Error, "Versand", "txtVersandKdn", ""});
  list.report({"VT", "", CheckStatus::Warning, "Vertreter 2", "tdbVertreter1", ""});
  list.report({"LB", "P2", CheckStatus::Clean, "", "", ""});
  ASSERT_EQ(list.sorted().size(), 3U);
  EXPECT_EQ(list.sorted()[0].code, "VS");
  EXPECT_EQ(list.sorted()[1].text, "Vertreter 2");
  EXPECT_EQ(list.statusOf("P1"), CheckStatus::Warning);

  list.report({"LB", "P1", CheckStatus::Clean, "", "", ""});
  list.report({"VS", "", CheckStatus::Clean, "", "", ""});
  ASSERT_EQ(list.sorted().size(), 1U);
  EXPECT_EQ(list.status(), CheckStatus::Warning);
}

TEST(FindingList, LeavesWhatDoesNotCountOutOfTheStatus) {
  FindingList list;
  list.report({"EP", "", CheckStatus::Warning, "Fehler beim verarbeiten: x", "", "", false});
  EXPECT_EQ(list.status(), CheckStatus::Clean);
  EXPECT_EQ(list.sorted().size(), 1U);
}

} // namespace
} // namespace qx
