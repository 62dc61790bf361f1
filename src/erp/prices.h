// Sales and purchase prices of the standalone ERP, and how staged discounts combine.
#pragma once

#include "erp/price_choice.h"
#include "platform/preisfindung.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace qx::erp {

/// How the discounts of a price combine (`KZRabattart`): "A" (the default) applies each to the remainder of
/// the one before; "S" adds them up and applies the sum to the whole.
inline constexpr std::string_view appliedInTurn = "A";
inline constexpr std::string_view addedUp = "S";

/// What a discount's value means (`KZRabatt1` to `3`): "P" (the default) is percent; "B" is an amount, which
/// takes the sign of its base.
inline constexpr std::string_view percentDiscount = "P";
inline constexpr std::string_view amountDiscount = "B";

/// The total discount on an amount.
double discountAmount(const StagedDiscounts& discounts, double amount);

/// The total discount in percent. Discounts that are amounts have no rate and are ignored.
double discountRate(const StagedDiscounts& discounts);

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
