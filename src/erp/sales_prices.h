// Sales prices of the standalone ERP.
#pragma once

#include "erp/price_choice.h"
#include "platform/preisfindung.h"

#include <array>
#include <optional>
#include <vector>

namespace qx::erp {

/// Finds a price in three levels: the customer's own, the customer's price list, the list for everybody. The
/// first level with a valid price decides. A price with the unit 0 makes the search fail.
class SalesPrices final : public Preisfindung {
public:
  /// Where a price was found: the result of `GetVKPreis` and, in words, `SalesPrice::source`.
  enum Level : std::int32_t { OwnPrice = 1, PriceList = 2, GeneralPrice = 3 };

  /// `diagnostics` must outlive the object.
  explicit SalesPrices(Diagnostics& diagnostics) : dates_(diagnostics) {}

  void setConnection(Connection& connection) override;
  void Init() override;
  void Init(Connection& connection) override;
  std::int32_t GetVKPreis(const PriceQuestion& question, SalesPrice& found) override;
  double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) override;
  double GetGesamtRabattSatz(const StagedDiscounts& discounts) override;

private:
  Connection& database();
  std::string priceListOf(std::string_view customer);
  std::array<std::vector<PriceStep>, 3> stepsByLevel(std::string_view article, Recordset& rows);

  PriceDates dates_;
  Connection* connection_ = nullptr;
  std::optional<UnitConversions> conversions_;
};

} // namespace qx::erp
