// Who polls the feed of results while several programs change jobs sees every change once.
#include "servers/shared_erp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <set>
#include <thread>

namespace qx {
namespace {

using ::testing::HasSubstr;

class PolledResults : public ::testing::TestWithParam<Kept> {
protected:
  /// Takes up what is new behind the cursor.
  void poll() {
    const ProgramResult result = erp.run({"results", "--after", cursor, "--json"});
    ASSERT_EQ(result.status, 0) << result.messages;
    const Json answer = result.json();
    for (const Json& entry : answer["results"])
      seen.push_back(entry["JobID"].get<std::string>() + ' ' + entry["state"].get<std::string>());
    cursor = answer["cursor"];
  }

  SharedErp erp{GetParam()};
  std::string cursor = "start";
  std::vector<std::string> seen;
};

INSTANTIATE_TEST_SUITE_P(File, PolledResults, ::testing::Values(Kept::InAFile));
INSTANTIATE_TEST_SUITE_P(Server, PolledResults, ::testing::Values(Kept::OnTheServer));

TEST_P(PolledResults, HoldEachChangeOfARunAndOfAClerkOnce) {
  constexpr int jobs = 400;
  constexpr int deleted = 12;
  erp.stageCustomers("K", jobs);
  // In the run's way only by the counter.
  erp.stageCustomers("weg", deleted);
  erp.execute("Update ImportKopf Set JobType = 12 Where JobType = 10 And Kundennummer >= 'weg'"_sql);
  std::thread clerk([&] {
    for (int i = 0; i < deleted; ++i) EXPECT_EQ(erp.run({"delete", "weg" + std::to_string(i)}).status, 0);
  });
  ProgramRun run = erp.start({"process"});
  std::optional<ProgramResult> result;
  int polls = 0;
  for (; !result; ++polls) {
    poll();
    result = run.waitAtMost(std::chrono::seconds(0));
  }
  clerk.join();
  poll();
  EXPECT_EQ(result->status, 0) << result->messages;
  EXPECT_GT(polls, 1);
  std::set<std::string> expected;
  for (int i = 0; i < jobs; ++i) expected.insert("K" + std::to_string(i) + " done");
  for (int i = 0; i < deleted; ++i) expected.insert("weg" + std::to_string(i) + " deleted");
  EXPECT_EQ(seen.size(), expected.size());
  EXPECT_EQ(std::set<std::string>(seen.begin(), seen.end()), expected);
  EXPECT_EQ(erp.count("Select Max(Folge) From Zustandswechsel"_sql), jobs + deleted) << "without gaps";
}

TEST_P(PolledResults, OfTwoProgramsThatTellTheFirstChangesHaveOneCounter) {
  for (int round = 0; round < 4; ++round) {
    erp.execute("Delete From Zaehlerstaende"_sql);
    erp.execute("Delete From Zustandswechsel"_sql);
    erp.stageCustomers("A", 1);
    erp.stageCustomers("B", 1);
    erp.execute("Delete From Zaehlerstaende"_sql);
    ProgramRun first = erp.start({"delete", "A0"});
    ProgramRun second = erp.start({"delete", "B0"});
    EXPECT_EQ(first.wait().status, 0);
    EXPECT_EQ(second.wait().status, 0);
    EXPECT_EQ(erp.count("Select Stand From Zaehlerstaende"_sql), 2);
    EXPECT_EQ(erp.keys("Select Folge From Zustandswechsel Order By Folge"_sql), "1 2 ");
  }
}

TEST(ServerResults, AreHeldBackUntilTheChangesBeforeThemAreVisible) {
  SharedErp erp(Kept::OnTheServer);
  erp.stageCustomers("A", 2);
  ASSERT_EQ(erp.run({"delete", "A0"}).status, 0);
  // Another program has taken its number and not yet committed.
  auto unit = std::make_unique<WorkUnit>(erp.connection());
  erp.execute("Update Zaehlerstaende Set Stand = Stand + 1"_sql);
  erp.execute("Insert Into Zustandswechsel (Folge, JobID, JobType, Zeitpunkt) Values (2, 'fremd', 13, "
              "'20261124103000')"_sql);
  ProgramRun later = erp.start({"delete", "A1"});
  erp.awaitWaiting();
  EXPECT_THAT(erp.run({"results", "--json"}).json()["cursor"].get<std::string>(), HasSubstr("-1-"));
  unit->commit();
  unit.reset();
  EXPECT_EQ(later.wait().status, 0);
  EXPECT_EQ(erp.keys("Select JobID From Zustandswechsel Order By Folge"_sql), "A0 fremd A1 ");
}

TEST(ServerResults, AreDoneWithoutWhereTheRightsAreMissing) {
  SharedErp erp(Kept::OnTheServer);
  erp.stageCustomers("A", 3);
  erp.execute("Delete From Zaehlerstaende"_sql);
  // As for a login without the right: the tables are another's. A view without rules takes no row.
  erp.execute("Alter Table Zustandswechsel Rename To Ablage"_sql);
  erp.execute("Create View Zustandswechsel As Select Distinct * From Ablage"_sql);
  const ProgramResult result = erp.run({"--verbose", "process"});
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_THAT(result.messages, HasSubstr("feed of results"));
  erp.expectWrittenOnce(3);
}

} // namespace
} // namespace qx
