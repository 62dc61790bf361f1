#include "erp/unit_conversions.h"

#include "model/text.h"

#include <cmath>
#include <stdexcept>

namespace qx::erp {

double UnitConversions::GetUmrechnung(const UnitConversion& conversion) {
  if (const auto found = ratio(conversion.article, conversion.toUnit, conversion.fromUnit))
    return found->factor();
  throw std::runtime_error("Für den Artikel '" + std::string(conversion.article) +
                           "' ist keine Umrechnung von '" + std::string(conversion.fromUnit) + "' nach '" +
                           std::string(conversion.toUnit) + "' angelegt.");
}

std::optional<UnitRatio> UnitConversions::ratio(std::string_view article, std::string_view unit,
                                                std::string_view baseUnit) {
  if (equalCodes(unit, baseUnit)) return UnitRatio{};
  for (const std::string_view owner : {article, std::string_view()}) {
    if (const auto direct = storedFactor(owner, unit, baseUnit)) return UnitRatio{*direct, 1};
    // NOLINTNEXTLINE(readability-suspicious-call-argument): reversed on purpose.
    if (const auto reverse = storedFactor(owner, baseUnit, unit)) return UnitRatio{1, *reverse};
    if (owner.empty()) break;
  }
  return std::nullopt;
}

std::optional<double> UnitConversions::storedFactor(std::string_view article, std::string_view unit,
                                                    std::string_view baseUnit) {
  const auto rows = connection_.open(sql("Select Faktor From Umrechnungen Where Artikelnummer = '"_sql,
                                         value(article), "' And Mengeneinheit = '"_sql, value(unit),
                                         "' And Basiseinheit = '"_sql, value(baseUnit), "'"_sql));
  if (rows->eof()) return std::nullopt;
  const auto found = rows->value("Faktor").number();
  // A factor whose reciprocal is not finite is unusable.
  return found && *found > 0 && std::isfinite(*found) && std::isfinite(1 / *found) ? found : std::nullopt;
}

} // namespace qx::erp
