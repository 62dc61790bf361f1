// Which step of a price table holds for a quantity, a unit and a day.
#pragma once

#include "erp/unit_conversions.h"
#include "platform/system.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qx::erp {

/// What is asked of a price table. Without a date the latest price counts, without a unit that of the table.
struct PriceDemand {
  std::string_view article;
  double quantity = 0;
  std::string_view unit;
  std::optional<Date> date;
};

/// What a row of a price table states: a price and what is calculated with, both for so many units.
struct UnitPrice {
  double price = 0;
  double calculated = 0;
  double priceUnit = 1;
};

/// When a row of a price table holds: from this quantity of this unit on ("" is any unit), from this time
/// stamp on ("" is ever since). `row` is the caller's.
struct PriceStep {
  std::size_t row = 0;
  std::string unit;
  double fromQuantity = 0;
  std::string validFrom;
  UnitPrice stated;
};

struct ChosenPrice {
  std::size_t row = 0;
  UnitPrice price; ///< in the unit asked for
};

/// The highest step that the quantity reaches, of equal steps the one that came into force last, not after
/// the date, of these the cheapest, and of equal prices the first. Steps in the unit asked for go before
/// those that must be converted, which are compared as quantities of the unit asked for. The sign of the
/// quantity does not count: a return is priced like a sale.
std::optional<ChosenPrice> choosePrice(const std::vector<PriceStep>& steps, const PriceDemand& demand,
                                       UnitConversions& conversions);

/// The day from which a row of a price table holds.
class PriceDates {
public:
  /// `diagnostics` must outlive the object.
  explicit PriceDates(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  /// The time stamp, or "" for a row that holds ever since. A text that is neither is told to the
  /// diagnostics, once, and null: nobody can say when that row holds.
  std::optional<std::string> validFrom(std::string_view article, const std::string& text);

private:
  Diagnostics& diagnostics_;
  std::set<std::string> told_;
};

} // namespace qx::erp
