// German dates, time stamps and fixed-point amounts.
#include "model/date.h"
#include "model/money.h"

#include <gtest/gtest.h>

#include <limits>

namespace qx {
namespace {

TEST(GermanDates, AreReadInEveryAcceptedForm) {
  struct Case {
    std::string_view text, stamp;
  };
  for (const Case& c : {Case{"24.11.2026", "20261124000000"}, Case{"1.2.2026", "20260201000000"},
                        Case{"01.02.29", "20290201000000"}, Case{"01.02.30", "19300201000000"},
                        Case{"31.12.99", "19991231000000"}, Case{"01.01.00", "20000101000000"},
                        Case{"29.02.2024", "20240229000000"}, Case{"24.11.2026 7:05", "20261124070500"},
                        Case{"24.11.2026 23:59:59", "20261124235959"}}) {
    const auto moment = parseGermanDateTime(c.text);
    ASSERT_TRUE(moment) << c.text;
    EXPECT_EQ(timeStamp(*moment), c.stamp) << c.text;
  }
}

TEST(GermanDates, AreRefusedInEveryOtherForm) {
  for (const std::string_view text : {"",
                                      "31.02.2026",
                                      "29.02.2023",
                                      "00.01.2026",
                                      "01.13.2026",
                                      "1.1.1",
                                      "1.1.126",
                                      "1.1.20261",
                                      "1.1",
                                      "2026-11-24",
                                      "24/11/2026",
                                      "24.11.2026 ",
                                      " 24.11.2026",
                                      "24.11.2026 24:00",
                                      "24.11.2026 12:60",
                                      "24.11.2026 12:00:60",
                                      "24.11.2026 12",
                                      "24.11.2026 12:5",
                                      "24.11.2026T12:00",
                                      "999999",
                                      "00:00:00",
                                      "now",
                                      "-1.1.2026",
                                      "1..2026"})
    EXPECT_FALSE(parseGermanDateTime(text)) << text;
}

TEST(GermanDates, AreWrittenWithLeadingZeros) {
  EXPECT_EQ(germanDate(makeDate(2026, 2, 1)), "01.02.2026");
  EXPECT_EQ(dayStamp(makeDate(987, 2, 1)), "09870201000000");
  EXPECT_EQ(timeStamp({makeDate(2026, 11, 24), 1, 2, 3}), "20261124010203");
}

TEST(TimeStamps, AreEightOrFourteenDigitsOfAMomentThatExists) {
  EXPECT_EQ(parseTimeStamp("20240229"), (DateTime{makeDate(2024, 2, 29), 0, 0, 0}));
  EXPECT_EQ(parseTimeStamp("20261124235958"), (DateTime{makeDate(2026, 11, 24), 23, 59, 58}));
  for (const char* text :
       {"", "2026", "20230229", "20261301", "2026112410", "20261124240000", "20261124006000",
        "20261124000060", "202611240000000", "24.11.2026", "2026-11-24", " 20261124"})
    EXPECT_EQ(parseTimeStamp(text), std::nullopt) << text;
}

TEST(Amounts, AreRoundedHalfToEvenAtTheFourthDecimal) {
  struct Case {
    double number;
    std::int64_t units;
  };
  // The halves are exact in binary: multiples of 2^-5 with five decimals.
  for (const Case& c : {Case{0.03125, 312}, Case{0.09375, 938}, Case{-0.03125, -312}, Case{-0.09375, -938},
                        Case{0.1 + 0.2, 3000}, Case{1.005, 10050}, Case{-0.00004, 0}, Case{12.34567, 123457}})
    EXPECT_EQ(Money::fromDouble(c.number), Money::ofTenThousandths(c.units)) << c.number;
}

TEST(Amounts, OutsideTheirRangeAreNone) {
  EXPECT_FALSE(Money::fromDouble(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(Money::fromDouble(std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(Money::fromDouble(1e15));
  EXPECT_TRUE(Money::fromDouble(9e14));
}

TEST(Amounts, AreReadFromDigitsWithPointOrComma) {
  struct Case {
    std::string_view text;
    std::int64_t units;
  };
  for (const Case& c :
       {Case{"7", 70000}, Case{"12,5", 125000}, Case{"12.5", 125000}, Case{".5", 5000}, Case{"5,", 50000},
        Case{"-0,0001", -1}, Case{"+1", 10000}, Case{"0.00005", 0}, Case{"0.00015", 2}, Case{"0.000050", 0},
        Case{"0.0000500001", 1}, Case{"-0.00015", -2}, Case{"0.00014999", 1}, Case{"0.99995", 10000},
        Case{"99999999999999", 999999999999990000}, Case{"00000000000000000001", 10000},
        Case{"99999999999999.99995", 1000000000000000000}, Case{"922337203685477.5807", 9223372036854775807}})
    EXPECT_EQ(Money::parse(c.text), Money::ofTenThousandths(c.units)) << c.text;
}

TEST(Amounts, AreNotReadFromAnythingElse) {
  for (const std::string_view text :
       {"", "-", ".", ",", "1.2.3", "1.000,50", "1e3", " 1", "1 ", "--1", "+-1", "12 EUR", "0x1",
        "922337203685477.5808", "922337203685477.58075", "999999999999999"})
    EXPECT_FALSE(Money::parse(text)) << text;
}

TEST(Amounts, AreWrittenWithoutSuperfluousZeros) {
  struct Case {
    std::int64_t units;
    std::string_view text;
  };
  for (const Case& c :
       {Case{0, "0"}, Case{70000, "7"}, Case{125000, "12.5"}, Case{-1, "-0.0001"}, Case{10010, "1.001"},
        Case{-123450, "-12.345"}, Case{std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"}})
    EXPECT_EQ(Money::ofTenThousandths(c.units).toText(), c.text);
}

TEST(Amounts, ThatDoNotFitAreRefusedInsteadOfTurningNegative) {
  const auto most = Money::ofTenThousandths(std::numeric_limits<std::int64_t>::max());
  const auto least = Money::ofTenThousandths(std::numeric_limits<std::int64_t>::min());
  const auto smallest = Money::ofTenThousandths(1);
  EXPECT_EQ(most - smallest + smallest, most);
  EXPECT_EQ(least + smallest - smallest, least);
  EXPECT_THROW(most + smallest, std::overflow_error);
  EXPECT_THROW(least - smallest, std::overflow_error);
  EXPECT_THROW(least + -smallest, std::overflow_error);
  EXPECT_THROW(most - -smallest, std::overflow_error);
  EXPECT_THROW(-least, std::overflow_error);
}

} // namespace
} // namespace qx
