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
/// A line's amount is its quantity times its price, divided by the price unit, less its staged discounts,
/// rounded to cents. The order's discount applies to the lines that allow it and is rounded once per tax key,
/// as is the tax. When prices include tax it is extracted instead of added. Text lines have no amount.
/// `orderDiscount` is a percentage.
OrderTotals orderTotals(Environment& environment, PriceComponent& prices, std::int32_t number,
                        double orderDiscount, bool pricesContainTax);

} // namespace qx
