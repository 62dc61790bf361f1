// Tests of the system adapters by the means of POSIX.
#include "adapters/system/process_stat.h"
#include "adapters/system/system_sources.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace qx {
namespace {

TEST(SystemClock, TellsTheLocalTime) {
  const char* const before = std::getenv("TZ");
  const std::string zone = before != nullptr ? before : "";
  const auto inZone = [](const char* name) {
    setenv("TZ", name, 1);
    tzset();
    return SystemClock().now();
  };
  const DateTime greenwich = inZone("UTC0");
  const DateTime tenHoursEast = inZone("EAST-10");
  if (before != nullptr)
    setenv("TZ", zone.c_str(), 1);
  else
    unsetenv("TZ");
  tzset();
  // The test may straddle the full hour.
  const int difference = (tenHoursEast.hour - greenwich.hour + 24) % 24;
  EXPECT_TRUE(difference == 10 || difference == 11) << difference;
  const auto days = [](const DateTime& moment) { return std::chrono::sys_days(moment.date); };
  EXPECT_GE(days(tenHoursEast), days(greenwich));
  EXPECT_GE(greenwich.date, makeDate(2024, 1, 1));
}

TEST(SystemProcesses, StartTimeIsTheTwentySecondFieldWhateverTheProgramIsCalled) {
  const std::string fields = " 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22000 23 24";
  const auto running = parseProcessStat("77 (a) R (b c) S" + fields);
  ASSERT_TRUE(running.has_value());
  EXPECT_EQ(running->number, 77U);
  EXPECT_EQ(running->startTime, 22000U);
  EXPECT_FALSE(parseProcessStat("77 (a) Z" + fields)) << "ended, not collected";
  EXPECT_FALSE(parseProcessStat("77 (a) S 4 5 6"));
  EXPECT_FALSE(parseProcessStat(""));
}

} // namespace
} // namespace qx
