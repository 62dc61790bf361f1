#include "erp/staged_discounts.h"

#include "model/text.h"

#include <algorithm>

namespace qx::erp {
namespace {

/// An amount takes the sign of its base: nothing is deducted from a line worth 0, and never more than
/// remains. A negative amount increases the line.
double amountOff(double value, double amount, double left) {
  if (amount == 0) return 0;
  const double sign = amount < 0 ? -1 : 1;
  return sign * std::min(value, std::max(left * sign, 0.0));
}

double total(const StagedDiscounts& discounts, double amount, bool withAmounts) {
  const bool inTurn = !equalCodes(discounts.kind, addedUp);
  double sum = 0;
  for (std::size_t i = 0; i < discounts.values.size(); ++i) {
    const double value = discounts.values[i];
    if (equalCodes(discounts.marks[i], amountDiscount)) {
      if (withAmounts) sum += amountOff(value, amount, amount - sum);
    } else {
      sum += (inTurn ? amount - sum : amount) * value / 100;
    }
  }
  return sum;
}

} // namespace

double discountAmount(const StagedDiscounts& discounts, double amount) {
  return total(discounts, amount, true);
}

double discountRate(const StagedDiscounts& discounts) { return total(discounts, 100, false); }

} // namespace qx::erp
