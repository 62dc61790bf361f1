// Selects the step of a price table for a quantity, a unit and a day.
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

/// A query to a price table. Without a date the latest price counts, without a unit that of the table.
struct PriceDemand {
  std::string_view article;
  double quantity = 0;
  std::string_view unit;
  std::optional<Date> date;
};

/// The prices of a row of a price table: sales and calculation price, both per `priceUnit` units.
struct UnitPrice {
  double price = 0;
  double calculated = 0;
  double priceUnit = 1;
};

/// The validity of a row of a price table: from this quantity of this unit ("" is any unit) and from this
/// time stamp ("" is always). `row` is for the caller.
struct PriceStep {
  std::size_t row = 0;
  std::string unit;
  double fromQuantity = 0;
  std::string validFrom;
  UnitPrice stated;
};

struct ChosenPrice {
  std::size_t row = 0;
  UnitPrice price; ///< in the requested unit
};

/// The highest step that the quantity reaches; among equal steps the latest valid one, then the cheapest,
/// then the first. Steps in the requested unit precede those that must be converted, which are compared in
/// the requested unit. The sign of the quantity is ignored: a return is priced like a sale.
std::optional<ChosenPrice> choosePrice(const std::vector<PriceStep>& steps, const PriceDemand& demand,
                                       UnitConversions& conversions);

/// The day from which a row of a price table is valid.
class PriceDates {
public:
  /// `diagnostics` must outlive the object.
  explicit PriceDates(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  /// The time stamp, or "" for a row that is always valid. Any other text gives null and is reported to the
  /// diagnostics once.
  std::optional<std::string> validFrom(std::string_view article, const std::string& text);

private:
  Diagnostics& diagnostics_;
  std::set<std::string> reported_;
};

} // namespace qx::erp
