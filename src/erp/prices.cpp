#include "erp/prices.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace qx::erp {
namespace {

/// An amount takes the sign of its base: nothing is deducted from a line worth 0, and never more than
/// remains. A negative amount increases the line.
double amountOff(double value, double amount, double left) {
  if (amount == 0) return 0;
  const double sign = amount < 0 ? -1 : 1;
  return sign * std::min(value, std::max(left * sign, 0.0));
}

double total(const StagedDiscounts& discounts, double amount, bool withAmounts) {
  const bool inTurn = !equalCodes(discounts.kind, addedUp);
  double sum = 0;
  for (std::size_t i = 0; i < discounts.values.size(); ++i) {
    const double value = discounts.values[i];
    if (equalCodes(discounts.marks[i], amountDiscount)) {
      if (withAmounts) sum += amountOff(value, amount, amount - sum);
    } else {
      sum += (inTurn ? amount - sum : amount) * value / 100;
    }
  }
  return sum;
}

constexpr std::size_t levels = 3;
constexpr std::array<std::string_view, levels> sources{"Kundenpreis", "Preisliste", "Grundpreis"};

SalesPrices::Level levelOf(Recordset& row) {
  if (!row.value("Kundennummer").isEmpty()) return SalesPrices::OwnPrice;
  return row.value("Preisliste").isEmpty() ? SalesPrices::GeneralPrice : SalesPrices::PriceList;
}

double numberIn(Recordset& row, ColumnName column, double whenNull = 0) {
  return row.value(column).number().value_or(whenNull);
}

UnitPrice statedIn(Recordset& row) {
  return {numberIn(row, "Preis"), numberIn(row, "KalkPreis"), numberIn(row, "Preiseinheit", 1)};
}

SalesPrice salesPrice(Recordset& row, const UnitPrice& converted) {
  SalesPrice price;
  price.price = converted.price;
  price.calculatedPrice = converted.calculated;
  price.priceUnit = converted.priceUnit;
  price.discounts.kind = row.text("KZRabattart");
  price.discounts.marks = {row.text("KZRabatt1"), row.text("KZRabatt2"), row.text("KZRabatt3")};
  price.discounts.values = {numberIn(row, "Rabatt1"), numberIn(row, "Rabatt2"), numberIn(row, "Rabatt3")};
  price.discountKind = price.discounts.kind;
  price.discount = discountRate(price.discounts);
  return price;
}

PurchasePrice purchasePrice(Recordset& row, const UnitPrice& converted) {
  PurchasePrice price;
  price.price = converted.price;
  price.priceUnit = converted.priceUnit;
  price.discountKind = row.text("EKRabattart");
  price.discounts = {numberIn(row, "EKRabatt1"), numberIn(row, "EKRabatt2"), numberIn(row, "EKRabatt3")};
  price.discount = discountRate({price.discountKind, {}, price.discounts});
  return price;
}

} // namespace

double discountAmount(const StagedDiscounts& discounts, double amount) {
  return total(discounts, amount, true);
}

double discountRate(const StagedDiscounts& discounts) { return total(discounts, 100, false); }

void SalesPrices::setConnection(Connection& connection) {
  connection_ = &connection;
  conversions_.emplace(connection);
}

void SalesPrices::Init() { database(); }

void SalesPrices::Init(Connection& connection) { setConnection(connection); }

std::int32_t SalesPrices::GetVKPreis(const PriceQuestion& question, SalesPrice& found) {
  const auto rows = database().open(
      sql("Select * From Verkaufspreise Where Artikelnummer = '"_sql, value(question.article),
          "' And ((Kundennummer <> '' And Kundennummer = '"_sql, value(question.customer),
          "') Or ((Kundennummer = '' Or Kundennummer Is Null) And (Preisliste = '"_sql,
          value(priceListOf(question.customer)), "' Or Preisliste = '' Or Preisliste Is Null)))"_sql));
  const PriceDemand demand{question.article, question.quantity, question.unit, question.date};
  std::size_t level = 0;
  for (const auto& steps : stepsByLevel(question.article, *rows)) {
    ++level;
    const auto chosen = choosePrice(steps, demand, *conversions_);
    if (!chosen) continue;
    rows->moveTo(chosen->row);
    SalesPrice price = salesPrice(*rows, chosen->price);
    if (price.priceUnit == 0) return failed;
    price.source = sources[level - 1];
    found = std::move(price);
    return static_cast<std::int32_t>(level);
  }
  return notFound;
}

std::array<std::vector<PriceStep>, levels> SalesPrices::stepsByLevel(std::string_view article,
                                                                     Recordset& rows) {
  std::array<std::vector<PriceStep>, levels> steps;
  for (std::size_t i = 0; !rows.eof(); rows.moveNext(), ++i)
    if (const auto from = dates_.validFrom(article, rows.text("GueltigAb")))
      steps[static_cast<std::size_t>(levelOf(rows)) - 1].push_back(
          {i, rows.text("Mengeneinheit"), numberIn(rows, "Menge"), *from, statedIn(rows)});
  return steps;
}

double SalesPrices::GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) {
  return discountAmount(discounts, amount);
}

double SalesPrices::GetGesamtRabattSatz(const StagedDiscounts& discounts) { return discountRate(discounts); }

Connection& SalesPrices::database() {
  if (connection_ == nullptr) throw std::logic_error("Die Preisfindung hat keine Datenbankverbindung.");
  return *connection_;
}

std::string SalesPrices::priceListOf(std::string_view customer) {
  const auto rows = database().open(
      sql("Select Preisliste From Kundenstamm Where Kundennummer = '"_sql, value(customer), "'"_sql));
  return rows->eof() ? std::string() : rows->text("Preisliste");
}

std::optional<PurchasePrice> PurchasePrices::find(const PurchasePriceQuestion& question) {
  const auto rows = connection_.open(sql("Select * From Einkaufspreise Where Artikelnummer = '"_sql,
                                         value(question.article), "' And Lieferantennummer = '"_sql,
                                         value(question.supplier), "'"_sql));
  std::vector<PriceStep> steps;
  for (std::size_t i = 0; !rows->eof(); rows->moveNext(), ++i) {
    const UnitPrice stated{numberIn(*rows, "EKPreis"), 0, numberIn(*rows, "EKPreiseinheit", 1)};
    const auto from = dates_.validFrom(question.article, rows->text("GueltigAb"));
    if (from && stated.priceUnit != 0)
      steps.push_back({i, rows->text("Mengeneinheit"), numberIn(*rows, "Menge"), *from, stated});
  }
  const auto chosen =
      choosePrice(steps, {question.article, question.quantity, question.unit, question.date}, conversions_);
  if (!chosen) return std::nullopt;
  rows->moveTo(chosen->row);
  return purchasePrice(*rows, chosen->price);
}

} // namespace qx::erp
