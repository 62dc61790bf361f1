// Values of staged positions and of prices as an order takes them.
#pragma once

#include "platform/value.h"

#include <cstdint>

namespace qx {

/// Each of these raises `OrderFailure` with a sentence naming the value that does not fit.

/// For a price column.
Value orderAmount(double price);
/// The staged quantity, unchanged. One too large for any amount is refused: it would ruin every sum.
const Value& orderQuantity(const Value& staged);
double orderDiscount(double discount);
double orderPriceUnit(double priceUnit);
/// The number of a cost assignment; 0 for none.
std::int32_t orderCost(const Value& staged);

} // namespace qx
