#include "erp/price_choice.h"

#include "model/text.h"
#include "platform/value.h"

#include <cmath>

namespace qx::erp {
namespace {

constexpr std::size_t dayLength = 8;

bool inForce(const PriceStep& step, const std::optional<Date>& date) {
  if (!date || step.validFrom.empty()) return true;
  return step.validFrom.substr(0, dayLength) <= dayStamp(*date).substr(0, dayLength);
}

bool sameUnit(const PriceStep& step, std::string_view unit) {
  return unit.empty() || step.unit.empty() || equalCodes(step.unit, unit);
}

/// The number rounded to 15 digits, so that no binary residue decides whether a step is reached.
double asDecimals(double number) {
  // Most numbers are such already: of four decimals and not too many digits, which their nearest double
  // tells.
  constexpr double scale = 1e4;
  constexpr double most = 1e15;
  const double scaled = std::nearbyint(number * scale);
  if (std::abs(scaled) < most && scaled / scale == number) return number;
  return Value(plainNumber(number)).number().value_or(number);
}

/// Amounts have four decimals.
bool isAmount(double number) {
  const auto amount = Money::fromDouble(number);
  return amount && amount->toDouble() == asDecimals(number);
}

/// Nothing is rounded away: where a price does not fit an amount, the price unit is scaled instead. Below 1
/// this is always done; otherwise small units would cost a different price than large ones.
UnitPrice converted(const UnitPrice& stated, const UnitRatio& ratio) {
  const double factor = ratio.factor();
  const UnitPrice multiplied{asDecimals(stated.price * factor), asDecimals(stated.calculated * factor),
                             stated.priceUnit};
  if (factor >= 1 && isAmount(multiplied.price) && isAmount(multiplied.calculated)) return multiplied;
  return {stated.price, stated.calculated, stated.priceUnit * ratio.per / ratio.times};
}

/// A step in the requested unit.
struct Candidate {
  const PriceStep* step = nullptr;
  double fromQuantity = 0;
  UnitPrice price;
};

double pricePerUnit(const UnitPrice& price) {
  return asDecimals(price.priceUnit == 0 ? price.price : price.price / price.priceUnit);
}

bool outranks(const Candidate& one, const Candidate& other) {
  if (one.fromQuantity != other.fromQuantity) return one.fromQuantity > other.fromQuantity;
  if (one.step->validFrom != other.step->validFrom) return one.step->validFrom > other.step->validFrom;
  return pricePerUnit(one.price) < pricePerUnit(other.price);
}

/// Takes the step when it is valid and outranks the best so far.
void consider(const PriceStep& step, const UnitRatio& ratio, const PriceDemand& demand,
              std::optional<Candidate>& best) {
  const double from = asDecimals(step.fromQuantity * ratio.per / ratio.times);
  if (!inForce(step, demand.date) || from > asDecimals(std::abs(demand.quantity))) return;
  const Candidate candidate{&step, from, converted(step.stated, ratio)};
  if (!best || outranks(candidate, *best)) best = candidate;
}

} // namespace

std::optional<ChosenPrice> choosePrice(const std::vector<PriceStep>& steps, const PriceDemand& demand,
                                       UnitConversions& conversions) {
  std::optional<Candidate> best;
  for (const PriceStep& step : steps)
    if (sameUnit(step, demand.unit)) consider(step, {}, demand, best);
  if (!best)
    for (const PriceStep& step : steps) {
      if (sameUnit(step, demand.unit)) continue;
      if (const auto ratio = conversions.ratio(demand.article, demand.unit, step.unit))
        consider(step, *ratio, demand, best);
    }
  if (!best) return std::nullopt;
  return ChosenPrice{best->step->row, best->price};
}

std::optional<std::string> PriceDates::validFrom(std::string_view article, const std::string& text) {
  if (trimBlanks(text).empty()) return std::string();
  if (const auto moment = parseTimeStamp(text)) return timeStamp(*moment);
  std::string what = "a price row has the date '" + text + "', which is not a time stamp, and is not used";
  const std::string where = "price of article " + std::string(article);
  if (reported_.insert(where + what).second) diagnostics_.report({where, what, ""});
  return std::nullopt;
}

} // namespace qx::erp
