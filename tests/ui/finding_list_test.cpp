#include "ui/finding_list.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

Finding ofPosition(Rule rule, std::string_view key) {
  return Finding(rule, "6", "A100").at({std::string(key), "1"});
}

TEST(FindingList, KeepsOneFindingPerCodeAndPositionAndListsTheWorstFirst) {
  FindingList list;
  list.report(false, Finding(Rule::OrderSalesRep, "7"));
  list.report(false, ofPosition(Rule::OrderStock, "P1"));
  list.report(false, Finding(Rule::OrderDelivery, "88888"));
  list.report(false, Finding(Rule::OrderSalesRep, "8"));
  list.report(true, ofPosition(Rule::OrderStock, "P2"));
  ASSERT_EQ(list.sorted().size(), 3U);
  EXPECT_EQ(list.sorted()[0].code(), "VS");
  EXPECT_EQ(list.sorted()[1].text(), "Vertreter: 8 wurde noch nicht angelegt.");
  EXPECT_EQ(list.statusOf("P1"), CheckStatus::Warning);

  list.report(true, ofPosition(Rule::OrderStock, "P1"));
  list.report(true, Finding(Rule::OrderDelivery));
  ASSERT_EQ(list.sorted().size(), 1U);
  EXPECT_EQ(list.status(), CheckStatus::Warning);
}

TEST(FindingList, LeavesWhatDoesNotCountOutOfTheStatus) {
  FindingList list;
  list.report(false, Finding(Rule::EarlierReasons, "x"), false);
  list.report(false, Finding(Rule::BankName, "A", "B"));
  EXPECT_EQ(list.status(), CheckStatus::Clean);
  EXPECT_EQ(list.sorted()[0].text(), "Fehler beim verarbeiten: x");
}

TEST(FindingList, ListsHintsBehindTheFindingsAndIsEmptyWithThemAlone) {
  FindingList list;
  list.setHints({Finding(Rule::OrderCurrency, "USD", "CHF"), Finding(Rule::OrderExchangeRate, "", "CHF")});
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.status(), CheckStatus::Clean);
  list.report(false, Finding(Rule::OrderSalesRep, "7"));
  const auto shown = list.sorted();
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[1].text(), "Die Währung 'USD' des Auftrags gilt nicht, der Kunde hat 'CHF'.");
  EXPECT_EQ(shown[2].found.severity, CheckStatus::Clean);
}

} // namespace
} // namespace qx
