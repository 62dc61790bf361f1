// Purchase prices of the standalone ERP.
#pragma once

#include "erp/price_choice.h"
#include "platform/preisfindung.h"

#include <optional>

namespace qx::erp {

/// Finds a supplier's price by the same steps as sales prices. The purchase group and the kind of price
/// finding make no difference. A price with the unit 0 is ignored. Null when there is no price.
class PurchasePrices final : public Einkaufspreisfindung {
public:
  /// `connection` and `diagnostics` must outlive the object.
  PurchasePrices(Connection& connection, Diagnostics& diagnostics)
      : connection_(connection), conversions_(connection), dates_(diagnostics) {}

  std::optional<PurchasePrice> find(const PurchasePriceQuestion& question) override;

private:
  Connection& connection_;
  UnitConversions conversions_;
  PriceDates dates_;
};

} // namespace qx::erp
