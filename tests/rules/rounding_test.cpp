#include "rules/rounding.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx;

TEST(Rounding, GoesToTheStepHalfAwayFromZeroOrUpwards) {
  const struct {
    double number, step;
    bool up;
    double expected;
  } cases[] = {
      {2.345, 0.01, false, 2.35},
      {2.341, 0.01, true, 2.35},
      {2.34, 0.01, true, 2.34},
      {-1.25, 0.5, false, -1.5},
      {-1.1, 0.5, true, -1.5},
      {7, 5, false, 5},
      {7.5, 5, false, 10},
      {-2.5, 1, false, -3},
      {0, 0.01, true, 0},
      // Stored as 2.67499999999999982: the decimal text decides.
      {2.675, 0.01, false, 2.68},
      {1.005, 0.01, false, 1.01},
  };
  for (const auto& c : cases)
    EXPECT_DOUBLE_EQ(rundenEx(c.number, c.step, c.up), c.expected) << c.number << " step " << c.step;
}

TEST(Rounding, UpwardsLeavesARemainderBelowOneHundredMillionth) {
  EXPECT_EQ(rundenEx(2.000000009, 1, true), 2);
  // 2.00000001 + 0.99999999 is exactly 3.
  EXPECT_EQ(rundenEx(2.00000001, 1, true), 3);
}

TEST(Rounding, KeepsTheResidueOfItsLastMultiplication) {
  EXPECT_EQ(rundenEx(0.25, 0.1, false), 3 * 0.1);
  EXPECT_NE(rundenEx(0.25, 0.1, false), 0.3);
}

TEST(Rounding, RefusesAStepOfZero) { EXPECT_THROW(rundenEx(1, 0, true), std::domain_error); }
