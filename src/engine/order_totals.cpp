#include "engine/order_totals.h"

#include "engine/order_failure.h"
#include "rules/rounding.h"

#include <array>
#include <map>
#include <string>

namespace qx {
namespace {

constexpr double cent = 0.01;

Money rounded(double amount) {
  const auto money = Money::fromDouble(rundenEx(amount, cent, false));
  if (!money) throw OrderFailure(Rule::OrderTotalTooLarge);
  return *money;
}

/// The sums of one tax key.
struct TaxGroup {
  double rate = 0;
  Money discountable;
  Money fixed;
};

StagedDiscounts discountsOf(Recordset& line) {
  constexpr std::array marks{ColumnName("KZRabatt1"), ColumnName("KZRabatt2"), ColumnName("KZRabatt3")};
  constexpr std::array values{ColumnName("Rabatt1"), ColumnName("Rabatt2"), ColumnName("Rabatt3")};
  StagedDiscounts discounts;
  discounts.kind = line.text("KZRabattart");
  for (std::size_t i = 0; i < marks.size(); ++i) {
    discounts.marks[i] = line.text(marks[i]);
    discounts.values[i] = line.value(values[i]).number().value_or(0);
  }
  return discounts;
}

bool anyDiscount(const StagedDiscounts& discounts) {
  return discounts.values[0] != 0 || discounts.values[1] != 0 || discounts.values[2] != 0;
}

Money lineAmount(Recordset& line, PriceComponent& prices) {
  double priceUnit = line.value("Preiseinheit").number().value_or(0);
  if (priceUnit == 0) priceUnit = 1;
  const double amount =
      line.value("Menge").number().value_or(0) * line.value("Preis").number().value_or(0) / priceUnit;
  const StagedDiscounts discounts = discountsOf(line);
  const double discount =
      anyDiscount(discounts) ? GetGRabatt(prices.get(), discounts, Value(std::int16_t{1}), amount) : 0;
  return rounded(amount - discount);
}

/// Raises `std::overflow_error` for sums that are too large.
OrderTotals addUp(Environment& environment, PriceComponent& prices, std::int32_t number, double orderDiscount,
                  bool pricesContainTax) {
  // The known form of this statement is incomplete; the missing parts are filled in here.
  const auto lines =
      environment.connection->open(sql("SELECT Zeilentyp, MwSt_KZ, WertJN, Menge, Preis, Preiseinheit, "
                                       "KZRabattart, Rabatt1, Rabatt2, Rabatt3, "
                                       "KZRabatt1, KZRabatt2, KZRabatt3, MwSt_Konto, MwSt_Satz, Rabattfähig, "
                                       "PosGewicht FROM Auftragspos WHERE "
                                       "Auftragsnummer = '"_sql,
                                       value(std::to_string(number)), "'"_sql));
  OrderTotals totals;
  std::map<std::string, TaxGroup> groups;
  for (; !lines->eof(); lines->moveNext()) {
    totals.weight += lines->value("PosGewicht").number().value_or(0);
    if (!lines->value("WertJN").truth().value_or(false)) continue;
    TaxGroup& group = groups[lines->text("MwSt_Konto")];
    group.rate = lines->value("MwSt_Satz").number().value_or(0);
    (lines->value("Rabattfähig").truth().value_or(false) ? group.discountable : group.fixed) +=
        lineAmount(*lines, prices);
  }
  for (const auto& [key, group] : groups) {
    const Money discount = rounded(group.discountable.toDouble() * orderDiscount / 100);
    const Money sum = group.discountable - discount + group.fixed;
    if (pricesContainTax) {
      const Money tax = rounded(sum.toDouble() * group.rate / (100 + group.rate));
      totals.gross += sum;
      totals.net += sum - tax;
      totals.tax += tax;
    } else {
      const Money tax = rounded(sum.toDouble() * group.rate / 100);
      totals.net += sum;
      totals.tax += tax;
      totals.gross += sum + tax;
    }
  }
  totals.weight = throughDecimalText(totals.weight);
  return totals;
}

} // namespace

OrderTotals orderTotals(Environment& environment, PriceComponent& prices, std::int32_t number,
                        double orderDiscount, bool pricesContainTax) {
  try {
    return addUp(environment, prices, number, orderDiscount, pricesContainTax);
  } catch (const std::overflow_error&) {
    throw OrderFailure(Rule::OrderTotalTooLarge);
  }
}

} // namespace qx
