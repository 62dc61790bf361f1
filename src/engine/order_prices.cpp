#include "engine/order_prices.h"

#include <utility>

namespace qx {

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
  const auto [entry, isNew] = found_.try_emplace(position.text("ChildID"));
  FoundPrice& answer = entry->second;
  if (!isNew) return answer;
  const std::string article = position.text("Artikelnummer");
  answer.baseUnit = stock_.baseUnit(article);
  const std::string staged = position.text("Mengeneinheit");
  answer.unit = staged.empty() ? answer.baseUnit : stock_.MengeneinheitAlternativ(staged);
  const PriceQuestion question{customer, article, position.value("Menge").number().value_or(0), answer.unit,
                               date};
  answer.result = component().GetVKPreis(question, answer.price);
  return answer;
}

} // namespace qx
