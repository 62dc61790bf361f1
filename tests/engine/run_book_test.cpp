// The entries of runs in the book of runs, whoever starts them.
#include "engine_fixture.h"

#include "support/failing_components.h"
#include "support/recording_connection.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace qx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// A host's connection that counts how often it is asked for its tables.
class CountedConnection final : public RecordingConnection {
public:
  explicit CountedConnection(std::shared_ptr<Connection> connection)
      : RecordingConnection(std::move(connection), true) {}
  std::vector<std::string> tableNames() override {
    ++lookedAt;
    return RecordingConnection::tableNames();
  }

  int lookedAt = 0;
};

class BookOfRuns : public EngineTest {
protected:
  /// "outcome processed/done/warning/error/waiting" of each run, the first one first; "not ended" without
  /// one.
  std::vector<std::string> runs() {
    std::vector<std::string> all;
    for (const RunEntry& run : lastRuns(connection(), 100)) {
      EXPECT_EQ(run.begin + run.user + run.program, "20261124103000prueferPrüfstand 1.0");
      EXPECT_EQ(run.end, run.outcome.empty() ? "" : "20261124103000");
      all.insert(all.begin(), run.outcome.empty()
                                  ? "not ended"
                                  : run.outcome + " " + std::to_string(run.processed) + "/" +
                                        std::to_string(run.done) + "/" + std::to_string(run.warning) + "/" +
                                        std::to_string(run.error) + "/" + std::to_string(run.waiting));
    }
    return all;
  }
};

TEST_F(BookOfRuns, HoldsEveryRunHoweverItEnded) {
  stageMany(3);
  std::vector<std::string> meanwhile;
  events.onInfo = [&](std::string_view info) {
    if (info.find("70002") == std::string_view::npos) return;
    meanwhile = runs();
    engine.requestStop();
  };
  EXPECT_TRUE(run());
  EXPECT_THAT(meanwhile, ElementsAre("not ended"));
  events.onInfo = {};

  erp.setOption("NewMail", "1");
  EXPECT_FALSE(run());
  erp.setOption("NewMail", "0");

  stageCustomer("J4", "");
  EXPECT_TRUE(run());
  EXPECT_EQ(lastRuns(connection(), 1).at(0).protocol, engine.lastRun().protocolId);

  stageCustomer("J5", "70005");
  FailingWorld world(erp.environment);
  world.fault.failing = "Adressindex.CreateIndex";
  world.fault.outOfMemory = true;
  EXPECT_FALSE(ImportJobObject2(world.environment).ProcessJobs());

  EXPECT_THAT(runs(), ElementsAre("stopped 2/2/0/0/1", "refused 0/0/0/0/0", "completed 2/1/0/1/0",
                                  "broken 0/0/0/0/0"));
}

TEST_F(BookOfRuns, ThatRefusesAnEntryKeepsNoRunFromItsWork) {
  stageMany(2);
  refuse("INSERT ON Importlaeufe"_sql, "new.Ende Is Null"_sql, "'gesperrt'"_sql);
  EXPECT_TRUE(run());
  EXPECT_THAT(erp.diagnostics.text(), HasSubstr("book of runs | gesperrt"));
  EXPECT_THAT(runs(), ElementsAre("completed 2/2/0/0/0")) << "the end brings the whole entry";
  refuse("INSERT ON Importlaeufe"_sql, "'gesperrt'"_sql);
  EXPECT_TRUE(run());
  EXPECT_THAT(erp.desktop.shown, IsEmpty());
}

TEST_F(BookOfRuns, OfAHostIsAskedForOncePerConnection) {
  for (const bool kept : {true, false}) {
    execute("Delete From ImportKopf"_sql);
    stageMany(2);
    const auto host = std::make_shared<CountedConnection>(hostConnection());
    engine.ActiveConnection(host);
    EXPECT_TRUE(run());
    EXPECT_TRUE(run());
    EXPECT_EQ(host->lookedAt, 2) << "for the book and for the feed of results";
    const auto entries = std::ranges::count_if(host->statements, [](const std::string& statement) {
      return statement.find("Importlaeufe") != std::string::npos;
    });
    EXPECT_EQ(entries, kept ? 4 : 0);
    EXPECT_THAT(host->statements, Not(Contains(HasSubstr("BEGIN"))));
    EXPECT_EQ(done(), 2);
    if (!kept) continue;
    EXPECT_THAT(runs(), ElementsAre("completed 2/2/0/0/0", "completed 0/0/0/0/0"));
    execute("DROP TABLE Importlaeufe"_sql);
  }
  EXPECT_EQ(erp.diagnostics.text(), "");
}

} // namespace
} // namespace qx
