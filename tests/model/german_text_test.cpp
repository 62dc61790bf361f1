
#include "model/german_text.h"

#include <gtest/gtest.h>

#include <string>

using namespace qx;

TEST(GermanText, NumbersHaveACommaAndNoSuperfluousDigits) {
  EXPECT_EQ(germanNumber(1234567.5), "1234567,5");
  EXPECT_EQ(germanNumber(10), "10");
  EXPECT_EQ(germanNumber(0.1 + 0.2), "0,3");
  EXPECT_EQ(germanNumber(-0.0), "0");
  EXPECT_EQ(germanNumber(0.00001), "1E-05");
}

TEST(GermanText, FixedDecimalsRoundHalfAwayFromZero) {
  EXPECT_EQ(germanDecimals(0.125, 2), "0,13");
  EXPECT_EQ(germanDecimals(2.675, 2), "2,68");
  EXPECT_EQ(germanDecimals(-0.001, 2), "0,00");
  EXPECT_EQ(germanDecimals(1234, 3), "1234,000");
  EXPECT_EQ(germanDecimals(1e15, 2), "1000000000000000,00");
  EXPECT_EQ(germanDecimals(123456789012345, 2), "123456789012345,00");
  EXPECT_EQ(germanDecimals(-99.995, 2), "-100,00");
  EXPECT_EQ(germanDecimals(0.999, 0), "1");
  EXPECT_EQ(germanDecimals(1e308, 0), "1" + std::string(308, '0'));
  EXPECT_THROW(germanDecimals(1, 7), std::out_of_range);
}

TEST(GermanText, ReadsItsOwnNumbersAndRefusesADot) {
  for (const double number : {0.0, -12.5, 1e-5, 123456789012345.0, 1e20})
    EXPECT_EQ(parseGermanNumber(germanNumber(number)), number);
  EXPECT_EQ(parseGermanNumber(" +3,5 "), 3.5);
  for (const char* text : {"1.5", "1.000,5", "", "12a", "1,2,3", "inf", "nan", "--1"})
    EXPECT_EQ(parseGermanNumber(text), std::nullopt) << text;
}

TEST(GermanText, EnteredNumbersMayHavePointsBetweenGroupsOfThreeDigits) {
  EXPECT_EQ(parseEnteredNumber(" 1.234,56 "), 1234.56);
  EXPECT_EQ(parseEnteredNumber("1.000"), 1000);
  EXPECT_EQ(parseEnteredNumber("-12.345.678"), -12345678);
  EXPECT_EQ(parseEnteredNumber("+123.456,5"), 123456.5);
  EXPECT_EQ(parseEnteredNumber("1234,5"), 1234.5);
  for (const char* text : {"1.5", "1.00", "1.0000", "1234.567", ".123", "1..000", "1.000.", "1,000.5",
                           "1.000.00", "-.123", "1.2a3", ""})
    EXPECT_EQ(parseEnteredNumber(text), std::nullopt) << text;
}
