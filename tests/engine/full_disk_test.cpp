// The processing run on a disk that takes no more.
#include "engine_fixture.h"

#include "support/full_disk.h"

#include <gmock/gmock.h>

namespace qx {
namespace {

class RunOnAFullDisk : public EngineTest {};

TEST_F(RunOnAFullDisk, AStoreThatFailsWhileTheProtocolIsMadeEndsTheRunBeforeItsFirstJob) {
  stageMany(2);
  execute("PRAGMA wal_checkpoint(TRUNCATE)"_sql);
  {
    const FullDisk full(1);
    EXPECT_FALSE(run());
    EXPECT_FALSE(engine.CreateProtocol()) << "a box, and nothing is raised";
  }
  EXPECT_EQ(engine.lastRun().end, RunEnd::Broken);
  ASSERT_EQ(erp.desktop.shown.size(), 2U);
  EXPECT_THAT(erp.desktop.shown.front().text,
              ::testing::StartsWith(
                  "Fehler bei der Verarbeitung: Die Datenbank kann nicht gelesen oder geschrieben werden."))
      << "the run ends, it does not go on without its protocol";
  EXPECT_THAT(
      erp.desktop.shown.back().text,
      ::testing::StartsWith("Verarbeitungsprotokoll konnte nicht erzeugt werden. Die Datenbank kann nicht "
                            "gelesen oder geschrieben werden."));
  EXPECT_TRUE(outcomes.empty());
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(protocolLines(), 2);
}

} // namespace
} // namespace qx
