// The sales prices of one order.
#pragma once

#include "engine/findings.h"
#include "platform/environment.h"
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

/// A position's price as the component answered, and the unit it was asked for.
struct FoundPrice {
  std::int32_t result = Preisfindung::notFound;
  SalesPrice price;
  std::string unit;     ///< the resolved unit of the position
  std::string baseUnit; ///< the article's; empty when it is unknown

  bool failed() const { return result == Preisfindung::failed; }
  bool found() const { return result != Preisfindung::failed && result != Preisfindung::notFound; }
};

/// By what findings name a row of `ImportPos`.
FindingPosition positionOf(Recordset& position);

/// Asks the pricing component once per article, quantity and unit of an order, so that the check and the
/// writing of one job use the same answer.
class OrderPrices {
public:
  /// `component` is initialised already; without one it is created and initialised at the first question.
  explicit OrderPrices(Environment& environment, std::unique_ptr<Preisfindung> component = nullptr)
      : environment_(environment), stock_(environment), component_(std::move(component)) {}

  /// Forgets the prices of the order before.
  void beginOrder() { found_.clear(); }
  /// `position` is a row of `ImportPos`; `date` is null when the order's date cannot be read.
  const FoundPrice& of(Recordset& position, std::string_view customer, const std::optional<Date>& date);
  Preisfindung& component();

private:
  using Asked = std::tuple<std::string, double, std::string>; ///< article, quantity and staged unit

  Environment& environment_;
  Stock stock_;
  std::unique_ptr<Preisfindung> component_;
  std::map<Asked, FoundPrice> found_;
};

} // namespace qx
