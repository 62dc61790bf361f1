// Conversion between the units of an article.
#pragma once

#include "platform/session.h"

#include <optional>

namespace qx::erp {

/// How many base units one unit is, as a fraction: the reciprocal of a stored factor may have no exact value.
struct UnitRatio {
  double times = 1;
  double per = 1;

  double factor() const { return times / per; }
};

/// Reads the table of conversions: an article's own before the general ones and the stated direction before
/// its reverse. Conversions are not chained. The roles of the units make no difference.
class UnitConversions final : public Umrechnungen {
public:
  /// `connection` must outlive the object.
  explicit UnitConversions(Connection& connection) : connection_(connection) {}

  double GetUmrechnung(const UnitConversion& conversion) override;
  /// Base units per unit; null when there is no conversion.
  std::optional<UnitRatio> ratio(std::string_view article, std::string_view unit, std::string_view baseUnit);

private:
  std::optional<double> storedFactor(std::string_view article, std::string_view unit,
                                     std::string_view baseUnit);

  Connection& connection_;
};

} // namespace qx::erp
