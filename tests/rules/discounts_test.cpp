#include "rules/price_component.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx;

namespace {

/// Discounts are added; a rate is percent.
class AddingPrices final : public Preisfindung {
public:
  void setConnection(Connection&) override {}
  void Init() override {}
  void Init(Connection&) override {}
  std::int32_t GetVKPreis(const PriceQuestion&, SalesPrice&) override { return notFound; }
  double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) override {
    return amount * GetGesamtRabattSatz(discounts) / 100;
  }
  double GetGesamtRabattSatz(const StagedDiscounts& discounts) override {
    return discounts.values[0] + discounts.values[1] + discounts.values[2];
  }
};

} // namespace

TEST(Discounts, OnlyTheNumberOneAsksForAnAmount) {
  AddingPrices prices;
  const StagedDiscounts discounts{"P", {"P", "P", ""}, {10, 5, 0}};
  for (const Value& amount : {Value(1), Value(1.0), Value("1"), Value(" 1 ")})
    EXPECT_EQ(GetGRabatt(prices, discounts, amount, 200), 30) << amount.text();
  for (const Value& rate : {Value(2), Value(0), Value(""), Value::null(), Value(1.5)})
    EXPECT_EQ(GetGRabatt(prices, discounts, rate, 200), 15) << rate.text();
  EXPECT_THROW(GetGRabatt(prices, discounts, Value("Betrag"), 200), std::invalid_argument);
}
