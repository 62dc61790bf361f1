// What the master data say of the positions of an order.
#pragma once

#include "engine/findings.h"
#include "engine/job_fields.h"
#include "platform/environment.h"
#include "rules/price_component.h"
#include "rules/stock.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace qx {

/// A position's price as the component answered.
struct FoundPrice {
  std::int32_t result = Preisfindung::notFound;
  SalesPrice price;

  bool failed() const { return result == Preisfindung::failed; }
  bool found() const { return result != Preisfindung::failed && result != Preisfindung::notFound; }
};

/// By what findings name a position.
FindingPosition positionOf(const JobFields& position);

class OrderFacts;

/// The facts of one article, quantity and unit of an order, each read when it is first asked for. What fails
/// reaches the caller and is read again at the next question.
class PositionFacts {
public:
  /// The article's unit; empty when the article is unknown.
  const std::string& baseUnit() { return units().base; }
  /// The staged unit as the ERP knows it, or the article's own.
  const std::string& unit() { return units().own; }
  const FoundPrice& price();
  /// Answers as a component that failed, without asking it.
  void failPrice() { price_ = FoundPrice{Preisfindung::failed, {}}; }
  /// The price, if it was asked for and found.
  std::optional<double> knownPrice() const;
  /// In the position's unit; raises what `Stock::GetLagerbestand` raises. Read at every call.
  StockAnswer stock();

  /// Made by `OrderFacts`, which it does not outlive.
  using Asked = std::tuple<std::string, double, std::string>; ///< article, quantity and staged unit
  PositionFacts(const OrderFacts& order, Asked asked) : order_(order), asked_(std::move(asked)) {}

private:
  struct Units {
    std::string base, own;
  };

  const Units& units();

  const OrderFacts& order_;
  Asked asked_;
  std::optional<Units> units_;
  std::optional<FoundPrice> price_;
};

/// The facts of one order: its check and its writing use the same answers. `date` is null when the order's
/// date cannot be read.
class OrderFacts {
public:
  OrderFacts(Environment& environment, PriceComponent& prices, std::string_view customer,
             const std::optional<Date>& date)
      : stock_(environment), prices_(prices), customer_(customer), date_(date) {}
  OrderFacts(Environment& environment, PriceComponent& prices, const JobFields& job);
  OrderFacts(const OrderFacts&) = delete;
  OrderFacts& operator=(const OrderFacts&) = delete;
  ~OrderFacts() = default;

  PositionFacts& of(const JobFields& position);

private:
  friend PositionFacts;

  Stock stock_;
  PriceComponent& prices_;
  std::string customer_;
  std::optional<Date> date_;
  std::map<PositionFacts::Asked, PositionFacts> known_;
};

} // namespace qx
