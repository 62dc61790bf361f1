// The totals of an order.
#pragma once

#include "engine/position_facts.h"
#include "model/money.h"
#include "platform/environment.h"

#include <cstdint>

namespace qx {

/// Amounts in the order's currency, weight in kg.
struct OrderTotals {
  Money net;
  Money tax;
  Money gross;
  double weight = 0;
};

/// Adds up the written lines of an order.
///
/// A line's amount is quantity times price by price unit, less its staged discounts, rounded to cents. Lines
/// that allow it share the order's discount, which is taken off and rounded once per tax key; tax is rounded
/// once per tax key. When the prices contain the tax it is taken out instead of added. Text lines have no
/// amount. `orderDiscount` is a percentage.
OrderTotals orderTotals(Environment& environment, PriceComponent& prices, std::int32_t number,
                        double orderDiscount, bool pricesContainTax);

} // namespace qx
