#include "rules/stock.h"

#include <cmath>
#include <stdexcept>

namespace qx {

std::string missingConversion() {
  try {
    throw;
  } catch (const DatabaseError&) {
    throw;
  } catch (const std::runtime_error& none) {
    return none.what();
  } catch (const std::domain_error& zero) {
    return zero.what();
  }
}

StockAnswer Stock::GetLagerbestand(std::string_view Artikelnummer, std::string_view Mengeneinheit,
                                   bool MEUmrechnung) const {
  const auto stores =
      activeConnection(environment_)
          .open(sql("Select Lagerbestand, MitBestand From Artikellager Where Artikelnummer = '"_sql,
                    value(Artikelnummer), "'"_sql));
  // The first store alone decides whether stock is kept.
  if (stores->eof() || !stores->value("MitBestand").truth().value_or(false))
    return {0, std::string(noStockUnit)};
  double sum = 0;
  for (; !stores->eof(); stores->moveNext()) sum += stores->value("Lagerbestand").number().value_or(0);

  std::string base = baseUnit(Artikelnummer);
  if (!MEUmrechnung) return {sum, std::move(base)};
  return {sum / conversionFactor(Artikelnummer, base, Mengeneinheit), std::string(Mengeneinheit)};
}

double Stock::conversionFactor(std::string_view article, std::string_view fromUnit,
                               std::string_view toUnit) const {
  if (!environment_.session) throw std::runtime_error("units cannot be converted without a session");
  const double factor = environment_.session->Umrechnungen().GetUmrechnung(
      {article, "ME Lager", "ME Verkauf", fromUnit, toUnit});
  // An infinite or NaN stock would silence the warning.
  if (!(factor > 0) || !std::isfinite(factor) || !std::isfinite(1 / factor))
    throw std::domain_error("the factor from '" + std::string(fromUnit) + "' to '" + std::string(toUnit) +
                            "' of article '" + std::string(article) + "' is " + plainNumber(factor));
  return factor;
}

std::string Stock::MengeneinheitAlternativ(std::string_view Mengeneinheit) const {
  const auto rows = activeConnection(environment_)
                        .open(sql("Select Mengeneinheit From MengeneinheitenAltern Where Alternativ = '"_sql,
                                  value(Mengeneinheit), "'"_sql));
  if (!rows->eof()) return rows->text("Mengeneinheit");
  // A unit without an alternative is returned unchanged, known or not; the query still checks that the table
  // is readable.
  activeConnection(environment_)
      .open(sql("Select * From Mengeneinheiten Where Mengeneinheit = '"_sql, value(Mengeneinheit), "'"_sql));
  return std::string(Mengeneinheit);
}

std::string Stock::baseUnit(std::string_view article) const {
  const auto rows = activeConnection(environment_)
                        .open(sql("Select Mengeneinheit From Artikelstamm Where Artikelnummer = '"_sql,
                                  value(article), "'"_sql));
  return rows->eof() ? std::string() : rows->text("Mengeneinheit");
}

} // namespace qx
