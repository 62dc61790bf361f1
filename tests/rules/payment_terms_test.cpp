#include "rules/payment_terms.h"

#include <gtest/gtest.h>

using namespace qx;

TEST(PaymentTerms, ReadAsASentence) {
  const struct {
    PaymentTerms terms;
    std::string_view expected;
  } cases[] = {
      {{}, "sofort rein Netto."},
      {{{}, 1}, "1 Tag netto."},
      {{{}, 30}, "30 Tage netto."},
      // The rate decides: days without one are no discount.
      {{{{{10, 0}}}, 14}, "14 Tage netto."},
      {{{{{10, 3}}}, 30}, "10 Tage 3%, 30 Tage netto"},
      {{{{{0, 3}}}, 0}, "0 Tage 3%"},
      {{{{{1, 2.5}, {14, 0}, {21, 1}}}, 1}, "1 Tag 2,5%, 21 Tage 1%, 1 Tag netto"},
  };
  for (const auto& c : cases) EXPECT_EQ(paymentTermsText(c.terms), c.expected);
}
