// Purchase prices of the standalone ERP.
#pragma once

#include "erp/price_choice.h"
#include "platform/preisfindung.h"

#include <optional>

namespace qx {

/// Finds a supplier's price by the same steps as sales prices. The purchase group and the kind of price
/// finding make no difference. Null when there is no price or when its price unit is 0.
class PurchasePrices final : public Einkaufspreisfindung {
public:
  /// `connection` must outlive the object.
  explicit PurchasePrices(Connection& connection) : connection_(connection), conversions_(connection) {}

  std::optional<PurchasePrice> find(const PurchasePriceQuestion& question) override;

private:
  Connection& connection_;
  UnitConversions conversions_;
};

} // namespace qx
