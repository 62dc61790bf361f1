#include "rules/payment_terms.h"

#include "model/german_text.h"
#include "model/text.h"

#include <algorithm>

namespace qx {
namespace {

int wholeOrZero(const Value& value) { return static_cast<int>(value.integer().value_or(0)); }
double numberOrZero(const Value& value) { return value.number().value_or(0); }

std::string daysText(int days) { return std::to_string(days) + (days == 1 ? " Tag" : " Tage"); }

} // namespace

PaymentTerms PaymentTerms::read(Recordset& row) {
  PaymentTerms terms;
  terms.discounts = {{{wholeOrZero(row.value("SkontoTage1")), numberOrZero(row.value("SkontoProzent1"))},
                      {wholeOrZero(row.value("SkontoTage2")), numberOrZero(row.value("SkontoProzent2"))},
                      {wholeOrZero(row.value("SkontoTage3")), numberOrZero(row.value("SkontoProzent3"))}}};
  terms.netDays = wholeOrZero(row.value("NettoTage"));
  return terms;
}

std::string paymentTermsText(const PaymentTerms& terms) {
  // The rates decide, not the days: a discount may have 0 days.
  const auto applies = [](const PaymentTerms::Discount& discount) { return discount.percent != 0; };
  if (std::ranges::none_of(terms.discounts, applies))
    // The upper-case N is deliberate.
    return terms.netDays == 0 ? "sofort rein Netto." : daysText(terms.netDays) + " netto.";

  std::string text;
  for (const auto& discount : terms.discounts)
    if (applies(discount)) text += daysText(discount.days) + " " + germanNumber(discount.percent) + "%, ";
  if (terms.netDays != 0) text += daysText(terms.netDays) + " netto, ";
  text.erase(text.size() - 2);
  return std::string(trimBlanks(text));
}

} // namespace qx
