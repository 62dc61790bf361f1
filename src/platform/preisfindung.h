// Price finding for sales and purchase.
#pragma once

#include "platform/database.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// What a sales price depends on. `date` is empty when the date of the order cannot be read.
struct PriceQuestion {
  std::string_view customer;
  std::string_view article;
  double quantity = 0;
  std::string_view unit;
  std::optional<Date> date;
};

/// Up to three staged discounts: the kind of each and its value (percent or amount).
struct StagedDiscounts {
  std::string kind;                 ///< `KZRabattart`: how the three combine
  std::array<std::string, 3> marks; ///< `KZRabatt1`..`3`
  std::array<double, 3> values{};   ///< `Rabatt1`..`3`
};

/// A sales price; amounts in the customer's currency per `priceUnit` units.
struct SalesPrice {
  double price = 0;
  double calculatedPrice = 0; ///< `KalkPreis`
  double priceUnit = 1;
  double discount = 0;      ///< `Rabatt`, percent in total
  std::string discountKind; ///< `Rabattart`
  StagedDiscounts discounts;
  std::string source; ///< `Preisfindung`
};

/// `qxPLU.clsPLU`.
class Preisfindung {
public:
  static constexpr std::int32_t failed = 1024;
  static constexpr std::int32_t notFound = 0;

  virtual ~Preisfindung() = default;
  /// The `Connection` property of the component.
  virtual void setConnection(Connection& connection) = 0;
  virtual void Init() = 0;
  virtual void Init(Connection& connection) = 0;
  /// Returns `failed`, `notFound` or, for a price that was found, any other number.
  virtual std::int32_t GetVKPreis(const PriceQuestion& question, SalesPrice& found) = 0;
  virtual double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) = 0;
  /// Percent.
  virtual double GetGesamtRabattSatz(const StagedDiscounts& discounts) = 0;
};

struct PurchasePriceQuestion {
  std::string_view supplier;
  std::string_view article;
  double quantity = 0;
  std::string_view unit;
  std::string_view purchaseGroup; ///< `Einkaufsgruppe`
  std::int16_t priceFinding = 0;  ///< `PreisfindungEinkauf`
  std::optional<Date> date;
};

struct PurchasePrice {
  double price = 0;
  double priceUnit = 1;
  double discount = 0; ///< percent
  std::string discountKind;
  std::array<double, 3> discounts{};
};

/// An optional component; without it the purchase columns of an order line stay empty.
class Einkaufspreisfindung {
public:
  virtual ~Einkaufspreisfindung() = default;
  virtual std::optional<PurchasePrice> find(const PurchasePriceQuestion& question) = 0;
};

} // namespace qx
