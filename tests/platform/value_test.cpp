// What a column's value can be read as, and when it cannot.
#include "platform/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace qx {
namespace {

const Value moment{DateTime{makeDate(2026, 11, 24), 9, 8, 7}};

TEST(Values, ReadAsText) {
  EXPECT_EQ(Value::null().text(), "");
  EXPECT_EQ(Value(std::int64_t{-5}).text(), "-5");
  EXPECT_EQ(Value(0.1).text(), "0.1");
  EXPECT_EQ(Value(-0.0).text(), "0");
  EXPECT_EQ(Value(10.0).text(), "10");
  EXPECT_EQ(Value(0.1 + 0.2).text(), "0.3") << "15 digits hide the rounding";
  EXPECT_EQ(Value(1234567890123.25).text(), "1234567890123.25") << "and lose nothing of a large amount";
  EXPECT_EQ(Value(Money::ofTenThousandths(125000)).text(), "12.5");
  EXPECT_EQ(Value(true).text(), "1");
  EXPECT_EQ(moment.text(), "20261124090807");
}

TEST(Values, ReadAsWholeNumbers) {
  for (const auto& [value, expected] : {std::pair<Value, std::int64_t>{" 12 ", 12},
                                        {"+7", 7},
                                        {"-7", -7},
                                        {"007", 7},
                                        {Value(3.0), 3},
                                        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                                        {Value(true), 1},
                                        {Value(Money::ofTenThousandths(20000)), 2}})
    EXPECT_EQ(value.integer(), expected) << value.text();
  for (const Value& none : {Value(""), Value("+-7"), Value("++7"), Value("1.0"), Value("1e2"), Value("0x10"),
                            Value("1 2"), Value("12a"), Value("9223372036854775808"), Value(3.5), Value(1e19),
                            Value(std::nan("")), Value(Money::ofTenThousandths(1)), Value(), Value(moment)})
    EXPECT_EQ(none.integer(), std::nullopt) << none.text();
}

TEST(Values, ReadAsNumbers) {
  EXPECT_EQ(Value("2.5").number(), 2.5);
  EXPECT_EQ(Value("-1e3").number(), -1000);
  EXPECT_EQ(Value(std::int64_t{4}).number(), 4);
  for (const Value& value : {Value("2,5"), Value("2.5x"), Value(""), Value(" "), Value::null(), moment})
    EXPECT_FALSE(value.number()) << value.text();
}

TEST(Values, ReadAsAmounts) {
  EXPECT_EQ(Value(" 12,5 ").money(), Money::ofTenThousandths(125000));
  EXPECT_EQ(Value(0.03125).money(), Money::ofTenThousandths(312)) << "half to even";
  EXPECT_EQ(Value(std::int64_t{2}).money(), Money::ofTenThousandths(20000));
  EXPECT_FALSE(Value("zwölf").money());
  EXPECT_FALSE(Value::null().money());
  EXPECT_FALSE(Value(1e300).money());
}

TEST(Values, ReadAsTruth) {
  EXPECT_EQ(Value::null().truth(), false);
  EXPECT_EQ(Value(std::int64_t{-1}).truth(), true);
  EXPECT_EQ(Value("0").truth(), false);
  EXPECT_EQ(Value("0.5").truth(), true);
  EXPECT_FALSE(Value("Wahr").truth().has_value());
  EXPECT_FALSE(Value("").truth().has_value());
}

TEST(Values, AreEmptyOnlyWhenNullOrTheEmptyText) {
  EXPECT_TRUE(emptyToNull("").isNull());
  EXPECT_TRUE(emptyToNull(Value::null()).isNull());
  EXPECT_EQ(emptyToNull(" "), Value(" "));
  EXPECT_EQ(emptyToNull(std::int64_t{0}), Value(std::int64_t{0}));
  EXPECT_EQ(emptyToNull(false), Value(false));
}

TEST(Values, AreCutToNoOtherWholeNumber) {
  EXPECT_EQ(wholeAs<std::int16_t>(Value(std::int64_t{32767})), std::int16_t{32767});
  EXPECT_EQ(wholeAs<std::int16_t>("-32768"), std::int16_t{-32768});
  EXPECT_EQ(wholeAs<std::int16_t>(Value(std::int64_t{32768})), std::nullopt);
  EXPECT_EQ(wholeAs<std::int32_t>(4294967297.0), std::nullopt);
  EXPECT_EQ(wholeAs<std::int32_t>(1.5), std::nullopt);
  EXPECT_EQ(wholeAs<std::int32_t>(Value::null()), std::nullopt);
  EXPECT_EQ(jobCode(Value(std::int64_t{65546})), 0);
  EXPECT_EQ(jobCode("33"), 33);
}

TEST(Values, OfOneTextButAnotherKindDiffer) {
  EXPECT_NE(Value(std::int64_t{1}), Value("1"));
  EXPECT_NE(Value(true), Value(std::int64_t{1}));
  EXPECT_EQ(Value(std::int16_t{1}), Value(std::int64_t{1}));
  EXPECT_EQ(Value("1").kind(), ValueKind::Text);
  EXPECT_EQ(moment.kind(), ValueKind::TimeStamp);
  EXPECT_EQ(Value("abc").textView(), "abc");
  EXPECT_EQ(Value(std::int64_t{5}).textView(), "");
}

} // namespace
} // namespace qx
