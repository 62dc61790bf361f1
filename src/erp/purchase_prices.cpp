#include "erp/purchase_prices.h"

#include "erp/staged_discounts.h"

namespace qx::erp {
namespace {

double purchaseNumber(Recordset& row, ColumnName column, double whenNull = 0) {
  return row.value(column).number().value_or(whenNull);
}

PurchasePrice purchasePrice(Recordset& row, const UnitPrice& converted) {
  PurchasePrice price;
  price.price = converted.price;
  price.priceUnit = converted.priceUnit;
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
  for (std::size_t i = 0; !rows->eof(); rows->moveNext(), ++i) {
    const UnitPrice stated{purchaseNumber(*rows, "EKPreis"), 0, purchaseNumber(*rows, "EKPreiseinheit", 1)};
    const auto from = dates_.validFrom(question.article, rows->text("GueltigAb"));
    if (from && stated.priceUnit != 0)
      steps.push_back({i, rows->text("Mengeneinheit"), purchaseNumber(*rows, "Menge"), *from, stated});
  }
  const auto chosen =
      choosePrice(steps, {question.article, question.quantity, question.unit, question.date}, conversions_);
  if (!chosen) return std::nullopt;
  rows->moveTo(chosen->row);
  return purchasePrice(*rows, chosen->price);
}

} // namespace qx::erp
