#include "engine/order_failure.h"

#include "model/german_text.h"
#include "model/money.h"

namespace qx {
namespace {

double fitting(double number, Rule rule) {
  if (!Money::fromDouble(number)) throw OrderFailure(rule, germanNumber(number));
  return number;
}

} // namespace

Value orderAmount(double price) {
  const auto money = Money::fromDouble(price);
  if (!money) throw OrderFailure(Rule::OrderPriceTooLarge, germanDecimals(price, 2));
  return Value(*money);
}

const Value& orderQuantity(const Value& staged) {
  fitting(staged.number().value_or(0), Rule::OrderQuantityTooLarge);
  return staged;
}

double orderDiscount(double discount) { return fitting(discount, Rule::OrderDiscountTooLarge); }

double orderPriceUnit(double priceUnit) { return fitting(priceUnit, Rule::OrderPriceUnitTooLarge); }

std::int32_t orderCost(const Value& staged) {
  if (staged.isEmpty()) return 0;
  const auto number = wholeAs<std::int32_t>(staged);
  if (!number) throw OrderFailure(Rule::OrderCostNumber, staged.text());
  return *number;
}

} // namespace qx
