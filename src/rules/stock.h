// The stock of an article and the units of staged quantities.
#pragma once

#include "platform/environment.h"

#include <string>
#include <string_view>

namespace qx {

/// The unit that means "no stock is kept".
inline constexpr std::string_view noStockUnit = "QXNone";

struct StockAnswer {
  double stock = 0;
  std::string unit; ///< `noStockUnit` for an article without stock or without a store
};

/// The reason of a failed unit conversion, from the current exception. Rethrows database failures and a lack
/// of memory. Call it only inside a handler.
std::string missingConversion();

/// Stock and unit lookups on the shared connection. Unknown articles and units are not errors; database
/// errors reach the caller.
class Stock {
public:
  explicit Stock(Environment& environment) : environment_(environment) {}

  /// The stock of all stores of the article, in its base unit or, with `MEUmrechnung`, in `Mengeneinheit`.
  /// Exceptions of the conversion reach the caller; raises `std::domain_error` for an unusable factor.
  StockAnswer GetLagerbestand(std::string_view Artikelnummer, std::string_view Mengeneinheit,
                              bool MEUmrechnung = false) const;
  /// The ERP's unit for an alternative spelling; otherwise the unit as given.
  std::string MengeneinheitAlternativ(std::string_view Mengeneinheit) const;
  /// The article's base unit; empty when the article is unknown.
  std::string baseUnit(std::string_view article) const;
  /// How many of `fromUnit` make one of `toUnit`. Exceptions of the conversion reach the caller; raises
  /// `std::domain_error` unless the factor is finite, above 0 and its reciprocal finite.
  double conversionFactor(std::string_view article, std::string_view fromUnit, std::string_view toUnit) const;

private:
  Environment& environment_;
};

} // namespace qx
