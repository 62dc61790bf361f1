#include "rules/discounts.h"

#include "rules/price_component.h"

#include <stdexcept>

namespace qx {

double GetGRabatt(Environment& environment, const StagedDiscounts& discounts, const Value& Param,
                  double Betrag) {
  return GetGRabatt(PriceComponent(environment).get(), discounts, Param, Betrag);
}

double GetGRabatt(Preisfindung& pricing, const StagedDiscounts& discounts, const Value& Param,
                  double Betrag) {
  const auto wanted = Param.isEmpty() ? 0.0 : Param.number();
  if (!wanted) throw std::invalid_argument("GetGRabatt: '" + Param.text() + "' is not a number");
  return *wanted == 1 ? pricing.GetGesamtRabattWert(discounts, Betrag)
                      : pricing.GetGesamtRabattSatz(discounts);
}

} // namespace qx
