#include "erp/staged_discounts.h"

#include "erp/caseless.h"

#include <cmath>

namespace qx {
namespace {

double total(const StagedDiscounts& discounts, double amount, bool withAmounts) {
  const bool inTurn = !equalCodes(discounts.kind, addedUp);
  double sum = 0;
  for (std::size_t i = 0; i < discounts.values.size(); ++i) {
    const double value = discounts.values[i];
    if (equalCodes(discounts.marks[i], amountDiscount)) {
      if (withAmounts) sum += std::copysign(value, value * amount);
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

} // namespace qx
