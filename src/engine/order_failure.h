// A reason for which an order is not written, and the values that can be one.
#pragma once

#include "engine/findings.h"
#include "platform/value.h"

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace qx {

/// Ends the writing of one order; `what()` is the line added to the job's reasons.
class OrderFailure : public std::runtime_error {
public:
  explicit OrderFailure(Finding finding)
      : std::runtime_error(runLine(finding)), finding_(std::move(finding)) {}
  explicit OrderFailure(Rule rule, std::string_view value = {}, std::string_view stored = {})
      : OrderFailure(Finding(rule, value, stored)) {}

  const Finding& finding() const { return finding_; }

private:
  Finding finding_;
};

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
