#include "engine/order_prices.h"

#include <utility>

namespace qx {

FindingPosition positionOf(Recordset& position) {
  return {position.text("ChildID"), position.text("Positionsnummer")};
}

Preisfindung& OrderPrices::component() {
  if (!component_) {
    auto created = environment_.components.createPreisfindung();
    created->setConnection(*environment_.connection);
    created->Init();
    component_ = std::move(created);
  }
  return *component_;
}

const FoundPrice& OrderPrices::of(Recordset& position, std::string_view customer,
                                  const std::optional<Date>& date) {
  const Asked asked{position.text("Artikelnummer"), position.value("Menge").number().value_or(0),
                    position.text("Mengeneinheit")};
  const auto known = found_.find(asked);
  if (known != found_.end()) return known->second;
  const auto& [article, quantity, staged] = asked;
  FoundPrice answer;
  answer.baseUnit = stock_.baseUnit(article);
  answer.unit = staged.empty() ? answer.baseUnit : stock_.MengeneinheitAlternativ(staged);
  const PriceQuestion question{customer, article, quantity, answer.unit, date};
  answer.result = component().GetVKPreis(question, answer.price);
  return found_.emplace(asked, std::move(answer)).first->second;
}

} // namespace qx
