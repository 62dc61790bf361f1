#include "erp/price_choice.h"

#include "erp/caseless.h"

#include <cmath>

namespace qx {
namespace {

constexpr std::size_t dayLength = 8;

bool inForce(const PriceStep& step, const std::optional<Date>& date) {
  if (!date || step.validFrom.empty()) return true;
  return step.validFrom.substr(0, dayLength) <= dayStamp(*date).substr(0, dayLength);
}

bool sameUnit(const PriceStep& step, std::string_view unit) {
  return unit.empty() || step.unit.empty() || equalCodes(step.unit, unit);
}

bool outranks(const PriceStep& step, const PriceStep& other) {
  if (step.fromQuantity != other.fromQuantity) return step.fromQuantity > other.fromQuantity;
  return step.validFrom > other.validFrom;
}

/// Takes the step when it holds for so many of its own units and outranks the best so far.
void consider(const PriceStep& step, double quantity, const std::optional<Date>& date,
              const PriceStep*& best) {
  if (!inForce(step, date) || step.fromQuantity > std::abs(quantity)) return;
  if (best == nullptr || outranks(step, *best)) best = &step;
}

} // namespace

std::optional<ChosenPrice> choosePrice(const std::vector<PriceStep>& steps, const PriceDemand& demand,
                                       UnitConversions& conversions) {
  const PriceStep* best = nullptr;
  for (const PriceStep& step : steps)
    if (sameUnit(step, demand.unit)) consider(step, demand.quantity, demand.date, best);
  if (best != nullptr) return ChosenPrice{best->row, 1};

  std::string convertedUnit;
  double convertedFactor = 1;
  for (const PriceStep& step : steps) {
    if (sameUnit(step, demand.unit)) continue;
    // Steps of one unit only are compared: the first unit that can be converted decides.
    if (best != nullptr && !equalCodes(step.unit, convertedUnit)) continue;
    const auto factor = conversions.factor(demand.article, demand.unit, step.unit);
    if (!factor) continue;
    const PriceStep* const before = best;
    consider(step, demand.quantity * *factor, demand.date, best);
    if (best != before) {
      convertedUnit = step.unit;
      convertedFactor = *factor;
    }
  }
  if (best == nullptr) return std::nullopt;
  return ChosenPrice{best->row, convertedFactor};
}

} // namespace qx
