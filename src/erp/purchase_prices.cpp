#include "erp/purchase_prices.h"

#include "erp/staged_discounts.h"

namespace qx {
namespace {

double purchaseNumber(Recordset& row, ColumnName column, double whenNull = 0) {
  return row.value(column).number().value_or(whenNull);
}

PurchasePrice purchasePriceIn(Recordset& row, double factor) {
  PurchasePrice price;
  price.price = purchaseNumber(row, "EKPreis") * factor;
  price.priceUnit = purchaseNumber(row, "EKPreiseinheit", 1);
  price.discountKind = row.text("EKRabattart");
  price.discounts = {purchaseNumber(row, "EKRabatt1"), purchaseNumber(row, "EKRabatt2"),
                     purchaseNumber(row, "EKRabatt3")};
  price.discount = discountRate({price.discountKind, {}, price.discounts});
  return price;
}

} // namespace

std::optional<PurchasePrice> PurchasePrices::find(const PurchasePriceQuestion& question) {
  const auto rows = connection_.open(sql("Select * From Einkaufspreise Where Artikelnummer = '"_sql,
                                         value(question.article), "' And Lieferantennummer = '"_sql,
                                         value(question.supplier), "'"_sql));
  std::vector<PriceStep> steps;
  for (std::size_t i = 0; !rows->eof(); rows->moveNext(), ++i)
    steps.push_back(
        {i, rows->text("Mengeneinheit"), purchaseNumber(*rows, "Menge"), rows->text("GueltigAb")});
  const auto chosen =
      choosePrice(steps, {question.article, question.quantity, question.unit, question.date}, conversions_);
  if (!chosen) return std::nullopt;
  rows->moveTo(chosen->row);
  const PurchasePrice price = purchasePriceIn(*rows, chosen->factor);
  return price.priceUnit == 0 ? std::nullopt : std::optional(price);
}

} // namespace qx
