#include "engine/position_facts.h"

#include "model/text.h"

namespace qx {

FindingPosition positionOf(const JobFields& position) {
  return {position("ChildID").text(), position("Positionsnummer").text()};
}

const PositionFacts::Units& PositionFacts::units() {
  if (!units_) {
    const auto& [article, quantity, staged] = asked_;
    Units units;
    units.base = order_.stock_.baseUnit(article);
    units.own = staged.empty() ? units.base : order_.stock_.MengeneinheitAlternativ(staged);
    units_ = std::move(units);
  }
  return *units_;
}

const FoundPrice& PositionFacts::price() {
  if (!price_) {
    const auto& [article, quantity, staged] = asked_;
    const PriceQuestion question{order_.customer_, article, quantity, unit(), order_.date_};
    FoundPrice answer;
    answer.result = order_.prices_.get().GetVKPreis(question, answer.price);
    price_ = std::move(answer);
  }
  return *price_;
}

std::optional<double> PositionFacts::knownPrice() const {
  return price_ && price_->found() ? std::optional(price_->price.price) : std::nullopt;
}

StockAnswer PositionFacts::stock() {
  return order_.stock_.GetLagerbestand(std::get<0>(asked_), unit(), !equalCodes(unit(), baseUnit()));
}

OrderFacts::OrderFacts(Environment& environment, PriceComponent& prices, const JobFields& job)
    : OrderFacts(environment, prices, job("Kundennummer").text(),
                 parseGermanDate(job("Eingangsdatum").text())) {}

PositionFacts& OrderFacts::of(const JobFields& position) {
  const PositionFacts::Asked asked{position("Artikelnummer").text(), position("Menge").number().value_or(0),
                                   position("Mengeneinheit").text()};
  return known_.try_emplace(asked, *this, asked).first->second;
}

} // namespace qx
