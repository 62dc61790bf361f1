#include "store/import_lock.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class ImportLockTest : public ::testing::Test {
protected:
  std::int64_t rows() { return erp.count("Select Count(*) From LockControl"_sql); }
  /// The row of another user.
  void lockBy(std::string_view user, std::string_view session = "S9") {
    erp.execute("Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values "
                "('ImportJob', '1', 'unbennant', '"_sql,
                value(session), "', '"_sql, value(user), "')"_sql);
  }

  ErpFile erp;
  ImportLock lock{erp.environment};
};

/// Gives up at once.
class ImpatientWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds) override { return false; }
};

constexpr std::string_view refusal =
    "Der Import wird gerade von Benutzer 'erika' auf Rechner 'unbennant' bearbeitet.";

TEST_F(ImportLockTest, ReleasesOnlyItsOwnRowAndTakesAgainWhatWasTakenAway) {
  ASSERT_EQ(lock.take().state, LockState::Taken);
  EXPECT_EQ(lock.confirm().state, LockState::Taken);
  erp.execute("Delete From LockControl"_sql);
  EXPECT_EQ(lock.confirm().state, LockState::Taken);
  EXPECT_TRUE(lock.holder());
  erp.execute("Delete From LockControl"_sql);
  lockBy("erika");
  EXPECT_EQ(lock.confirm().state, LockState::Refused);
  EXPECT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_TRUE(lock.releaseIfHeld());
  EXPECT_FALSE(lock.held());
  ASSERT_TRUE(lock.holder()) << "hers";
  EXPECT_EQ(lock.holder()->Benutzer, "erika");
}

} // namespace

TEST_F(ImportLockTest, TheRowNamesUserSessionAndAMisspelledStation) {
  EXPECT_EQ(lock.take().state, LockState::Taken);
  EXPECT_TRUE(lock.held());
  const auto holder = lock.holder();
  ASSERT_TRUE(holder);
  EXPECT_EQ(holder->Benutzer, "prüfer");
  EXPECT_EQ(holder->StationID, "unbennant");
  EXPECT_EQ(holder->SessionID, "S0001");
  EXPECT_TRUE(lock.release());
  EXPECT_FALSE(lock.held());
  EXPECT_FALSE(lock.holder());
}

TEST_F(ImportLockTest, ALockWhoseRowCannotBeDeletedIsStillHeldAndCanBeReleasedLater) {
  EXPECT_EQ(lock.take().state, LockState::Taken);
  erp.execute("Create Trigger Fest Before Delete On LockControl Begin Select Raise(Abort, 'fest'); End"_sql);
  EXPECT_FALSE(lock.releaseIfHeld());
  EXPECT_TRUE(lock.held());
  erp.execute("Drop Trigger Fest"_sql);
  {
    const WorkUnit another(erp.connection());
    EXPECT_FALSE(lock.releaseIfHeld()) << "what becomes of the open unit is not for the lock to say";
  }
  EXPECT_TRUE(lock.releaseIfHeld());
  EXPECT_FALSE(lock.held());
  EXPECT_EQ(rows(), 0);
}

TEST_F(ImportLockTest, OfALongSessionIdentityTheRowKeepsFifteenCharacters) {
  erp.session->sessionId = "Sitzung-äöü-123456";
  EXPECT_EQ(lock.take().state, LockState::Taken);
  EXPECT_EQ(erp.single("Select SessionID From LockControl"_sql), Value("Sitzung-äöü-123"));
}

TEST_F(ImportLockTest, ASecondUserIsRefusedWithTheHoldersNameAndReleasesNothing) {
  lockBy("erika");
  EXPECT_EQ(lock.take().state, LockState::Refused);
  ASSERT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_EQ(erp.desktop.shown[0].text, refusal);
  EXPECT_EQ(erp.desktop.shown[0].title, "Datensatz gesperrt");
  EXPECT_TRUE(lock.releaseIfHeld());
  EXPECT_EQ(rows(), 1);
  // The unconditional release frees a row whoever owns it.
  EXPECT_TRUE(lock.release());
  EXPECT_EQ(rows(), 0);
}

TEST_F(ImportLockTest, ADeadProgramsLockIsTakenOverWithANotice) {
  lockBy("erika", "tot");
  erp.liveness.answer = false;
  EXPECT_EQ(lock.take().state, LockState::Taken);
  EXPECT_EQ(erp.liveness.asked, std::vector<std::string>{"tot"});
  EXPECT_EQ(lock.holder()->Benutzer, "prüfer");
  EXPECT_EQ(rows(), 1);
  ASSERT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_NE(erp.desktop.shown[0].text.find("'erika'"), std::string::npos);
}

TEST_F(ImportLockTest, ABusyDatabaseIsRefusedByARowAndUnavailableWithoutOne) {
  const auto other = erp.secondConnection();
  WorkUnit writing(*other);
  ImpatientWait impatient;
  const LockOutcome unavailable = lock.take(&impatient);
  EXPECT_EQ(unavailable.state, LockState::Unavailable);
  EXPECT_NE(unavailable.reason.find("erp.db"), std::string::npos) << unavailable.reason;
  EXPECT_FALSE(lock.held());
  EXPECT_FALSE(lock.release(&impatient));
  writing.commit();

  lockBy("erika");
  WorkUnit again(*other);
  EXPECT_EQ(lock.take(&impatient).state, LockState::Refused);
  EXPECT_EQ(erp.desktop.shown.back().text, refusal);
}

TEST_F(ImportLockTest, OnOurOwnConnectionAMissingTableMakesItUnavailable) {
  erp.execute("Drop Table LockControl"_sql);
  EXPECT_EQ(lock.take().state, LockState::Unavailable);
  EXPECT_FALSE(erp.diagnostics.entries.empty());
}

TEST_F(ImportLockTest, OnAHostsConnectionFailingStepsAreSkippedAndNothingIsTakenOver) {
  lockBy("erika");
  erp.liveness.answer = false;
  erp.connect(erp.hostConnection());
  EXPECT_EQ(lock.take().state, LockState::Refused);
  EXPECT_EQ(erp.desktop.shown.back().text, refusal);
  erp.execute("Drop Table LockControl"_sql);
  EXPECT_EQ(lock.take().state, LockState::Taken);
  EXPECT_FALSE(erp.diagnostics.entries.empty());
}

TEST_F(ImportLockTest, OnAHostsConnectionARowMetByTheInsertRefuses) {
  // Another user's row appears between looking and writing; "Fail" keeps it although our insert is refused.
  erp.execute("Create Trigger Dazwischen Before Insert On LockControl When New.Benutzer = 'prüfer' Begin "
              "Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values "
              "('ImportJob', '1', 'unbennant', 'S9', 'erika'); Select Raise(Fail, 'schon da'); End"_sql);
  erp.connect(erp.hostConnection());
  EXPECT_EQ(lock.take().state, LockState::Refused);
  EXPECT_FALSE(lock.held());
  EXPECT_EQ(erp.desktop.shown.back().text, refusal);
}

TEST_F(ImportLockTest, WithoutASessionTheLockIsTakenAllTheSame) {
  erp.environment.session = nullptr;
  EXPECT_EQ(lock.take().state, LockState::Taken);
  EXPECT_EQ(rows(), 1);
}
