// Which step of a price table holds for a quantity, a unit and a day.
#pragma once

#include "erp/unit_conversions.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// What is asked of a price table. Without a date the latest price counts, without a unit that of the table.
struct PriceDemand {
  std::string_view article;
  double quantity = 0;
  std::string_view unit;
  std::optional<Date> date;
};

/// When a row of a price table holds: from this quantity of this unit on ("" is any unit), from this time
/// stamp on ("" is ever since). `row` is the caller's.
struct PriceStep {
  std::size_t row = 0;
  std::string unit;
  double fromQuantity = 0;
  std::string validFrom;
};

struct ChosenPrice {
  std::size_t row = 0;
  double factor = 1; ///< the row's price times this is the price per unit asked for
};

/// The highest step that the quantity reaches, and of equal steps the one that came into force last, not
/// after the date. Steps in the unit asked for go before steps that must be converted. The sign of the
/// quantity does not count: a return is priced like a sale.
std::optional<ChosenPrice> choosePrice(const std::vector<PriceStep>& steps, const PriceDemand& demand,
                                       UnitConversions& conversions);

} // namespace qx
