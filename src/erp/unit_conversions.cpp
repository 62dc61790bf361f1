#include "erp/unit_conversions.h"

#include "erp/caseless.h"

#include <stdexcept>

namespace qx {

double UnitConversions::GetUmrechnung(const UnitConversion& conversion) {
  if (const auto found = factor(conversion.article, conversion.toUnit, conversion.fromUnit)) return *found;
  throw std::runtime_error("Für den Artikel '" + std::string(conversion.article) +
                           "' ist keine Umrechnung von '" + std::string(conversion.fromUnit) + "' nach '" +
                           std::string(conversion.toUnit) + "' angelegt.");
}

std::optional<double> UnitConversions::factor(std::string_view article, std::string_view unit,
                                              std::string_view baseUnit) {
  if (equalCodes(unit, baseUnit)) return 1.0;
  for (const std::string_view owner : {article, std::string_view()}) {
    if (const auto direct = storedFactor(owner, unit, baseUnit)) return direct;
    // NOLINTNEXTLINE(readability-suspicious-call-argument): the other way round on purpose.
    if (const auto reverse = storedFactor(owner, baseUnit, unit)) return 1.0 / *reverse;
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
  return found && *found > 0 ? found : std::nullopt;
}

} // namespace qx
