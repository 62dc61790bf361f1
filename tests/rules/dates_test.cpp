#include "rules/dates.h"

#include "support/fake_session.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx;

TEST(Dates, StampOfADayHasNoTime) {
  EXPECT_EQ(intdat("13.05.2007 17:45"), "20070513000000");
  EXPECT_EQ(intdat("1.2.07"), "20070201000000");
  EXPECT_EQ(intdat(" 13.05.2007 "), "20070513000000");
  EXPECT_THROW(intdat("01.01.0000"), std::invalid_argument);
  EXPECT_EQ(intdat(Value(DateTime{makeDate(2007, 5, 13), 17, 45, 0})), "20070513000000");
}

TEST(Dates, StampOfWhatIsNoDayNamesTheValue) {
  for (const Value& value : {Value::null(), Value(""), Value("31.02.2006"), Value("morgen")})
    EXPECT_THROW(intdat(value), std::invalid_argument);
  try {
    intdat("31.02.2006");
  } catch (const std::invalid_argument& failure) {
    EXPECT_NE(std::string(failure.what()).find("31.02.2006"), std::string::npos);
  }
}

TEST(Dates, PeriodHasAnOpenEndForBothMarkers) {
  EXPECT_EQ(PeriodOf(makeDate(2007, 5, 13)), "200705");
  EXPECT_EQ(PeriodOf(makeDate(4637, 11, 25)), "999999");
  EXPECT_EQ(PeriodOf(makeDate(3169, 8, 5)), "999999");
  EXPECT_EQ(PeriodOf(makeDate(4637, 11, 24)), "463711");
  // The markers are these day numbers, counted from 30.12.1899.
  using std::chrono::sys_days;
  const auto dayNumber = [](Date date) {
    return (sys_days(date) - sys_days(makeDate(1899, 12, 30))).count();
  };
  EXPECT_EQ(dayNumber(makeDate(4637, 11, 25)), 999999);
  EXPECT_EQ(dayNumber(makeDate(3169, 8, 5)), 463711);
}

TEST(Dates, TodayIsTheSessionsAndOnlyWithoutOneTheWorkstations) {
  FakeWorld world;
  world.session->date = makeDate(2007, 1, 2);
  world.clock.moment.date = makeDate(2026, 11, 24);
  EXPECT_EQ(NowEx(world.environment), makeDate(2007, 1, 2));
  EXPECT_TRUE(world.diagnostics.entries.empty());
  world.environment.session = nullptr;
  EXPECT_EQ(NowEx(world.environment), makeDate(2026, 11, 24));
  EXPECT_EQ(world.diagnostics.entries.size(), 1U);
}
