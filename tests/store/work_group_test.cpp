// How many jobs a unit of work holds when time matters.
#include "store/work_group.h"

#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace qx {
namespace {

using namespace std::chrono_literals;

/// Jobs that take their time, and so does reading ahead for them.
struct SlowJobs {
  SlowJobs(std::chrono::milliseconds take, std::chrono::milliseconds foresee)
      : take(take), foresee(foresee) {}

  std::size_t run(std::size_t count) {
    JobWalk walk{[this](std::size_t) {
                   erp.clock.passed += take;
                   largest = std::max(largest, ++inGroup);
                   group.afterCommit([this] { inGroup = 0; });
                 },
                 [](std::size_t, const WorkLostError&) { return false; }, [] { return false; },
                 [this](std::size_t, std::size_t jobs) {
                   erp.clock.passed += foresee * jobs;
                   foreseen += jobs;
                 }};
    return group.takeAll(count, walk);
  }

  std::chrono::milliseconds take, foresee;
  TestErp erp;
  WorkGroup group{erp.environment, nullptr};
  std::size_t foreseen = 0;
  std::size_t inGroup = 0;
  std::size_t largest = 0;
};

TEST(WorkGroup, ReadsAheadForHardlyMoreJobsThanItsGroupsHold) {
  SlowJobs equal{10ms, 10ms};
  EXPECT_EQ(equal.run(1000), 1000U);
  EXPECT_EQ(equal.foreseen, 1000U);
  SlowJobs costly{1ms, 20ms};
  EXPECT_EQ(costly.run(1000), 1000U);
  EXPECT_EQ(costly.foreseen, 1000U);
  SlowJobs slow{50ms, 1ms};
  EXPECT_EQ(slow.run(1000), 1000U);
  EXPECT_LE(slow.foreseen, 10000U) << "the time of reading ahead is small beside that of the jobs";
}

TEST(WorkGroup, HoldsAsManyJobsAsFitIntoItsTime) {
  SlowJobs quick{1ms, 0ms};
  quick.run(1000);
  EXPECT_EQ(quick.largest, 100U);
  SlowJobs slow{50ms, 0ms};
  slow.run(100);
  EXPECT_EQ(slow.largest, 4U) << "200 ms";
}

} // namespace
} // namespace qx
