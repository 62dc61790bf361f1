// The stock of an article and the units in which quantities arrive.
#pragma once

#include "platform/environment.h"

#include <string>
#include <string_view>

namespace qx {

/// The unit that stands for "no stock is kept".
inline constexpr std::string_view noStockUnit = "QXNone";

struct StockAnswer {
  double stock = 0;
  std::string unit; ///< `noStockUnit` for an article without stock or without a store
};

/// Why there is no conversion between two units: what the conversion raised. Whatever else is at hand, a
/// database's failure or a lack of memory, is rethrown. To be called inside a handler.
std::string missingConversion();

/// Stock and unit lookups on the shared connection. Unknown articles and units are no errors; database errors
/// reach the caller.
class Stock {
public:
  explicit Stock(Environment& environment) : environment_(environment) {}

  /// The stock of all stores of the article, in its base unit or, with `MEUmrechnung`, in `Mengeneinheit`.
  /// The conversion's failure reaches the caller; `std::domain_error` is raised for a factor that is no
  /// usable number.
  StockAnswer GetLagerbestand(std::string_view Artikelnummer, std::string_view Mengeneinheit,
                              bool MEUmrechnung = false) const;
  /// The unit that the ERP knows for an alternative spelling; else the unit as given.
  std::string MengeneinheitAlternativ(std::string_view Mengeneinheit) const;
  /// The article's base unit; empty when the article is unknown.
  std::string baseUnit(std::string_view article) const;
  /// How many of `fromUnit` make one of `toUnit`. The conversion's failure reaches the caller;
  /// `std::domain_error` is raised for what is no finite number above 0, or so small that its reverse is
  /// none.
  double conversionFactor(std::string_view article, std::string_view fromUnit, std::string_view toUnit) const;

private:
  Environment& environment_;
};

} // namespace qx
