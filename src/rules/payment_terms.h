// The sentence that describes a term of payment.
#pragma once

#include "platform/database.h"

#include <array>
#include <string>

namespace qx {

/// A term of payment; null columns count as 0.
struct PaymentTerms {
  struct Discount {
    int days = 0;
    double percent = 0;
  };
  std::array<Discount, 3> discounts{};
  int netDays = 0;

  /// From the current row of a statement on `Zahlungsbedingungen`.
  static PaymentTerms read(Recordset& row);
};

/// "10 Tage 3%, 30 Tage netto"; without any discount "30 Tage netto." or "sofort rein Netto.".
std::string paymentTermsText(const PaymentTerms& terms);

} // namespace qx
