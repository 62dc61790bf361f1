#include "rules/price_component.h"

#include <stdexcept>
#include <utility>

namespace qx {

void PriceComponent::create() { created_ = environment_.components.createPreisfindung(); }

void PriceComponent::init(Connection& connection) {
  auto created = std::exchange(created_, nullptr);
  if (!created) return;
  created->Init(connection);
  component_ = std::move(created);
}

Preisfindung& PriceComponent::get() {
  if (!component_) {
    auto created = environment_.components.createPreisfindung();
    created->setConnection(activeConnection(environment_));
    created->Init();
    component_ = std::move(created);
  }
  return *component_;
}

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
