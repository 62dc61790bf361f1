// Job keys, job codes, the position cursor and the keyed collections.
#include "model/import_job.h"
#include "model/job_codes.h"
#include "model/job_key.h"

#include <gtest/gtest.h>
#include <vector>

#include <chrono>
#include <memory>
#include <string>

namespace qx {
namespace {

TEST(JobKey, PadsEveryFieldAndKeepsTheStorageOrderOfTheLast) {
  EXPECT_EQ(jobKey(GuidFields{0x1A, 0x2, 0xFFFF, {0, 1, 0x0F, 0x10, 0xAB, 0xCD, 0xEF, 0x99}}),
            "0000001A0002FFFF00010F10ABCDEF99");
  EXPECT_EQ(jobKey(GuidFields{}), std::string(32, '0'));
}

TEST(JobKey, IsEmptyWithoutAGuid) { EXPECT_EQ(jobKey(std::nullopt), ""); }

TEST(JobCodes, CarryKindAndState) {
  struct Case {
    std::int16_t code, kind;
    JobState state;
    bool waitingHeader;
  };
  for (const Case& c : {Case{qxtjobkunden, 10, JobState::Waiting, true},
                        Case{qxtJobKundenWarning, 10, JobState::Warning, false},
                        Case{qxtJobVerträgeError, 20, JobState::Error, false},
                        Case{qxtJobAufträgeDone, 30, JobState::Done, false},
                        Case{qxtjobkundenverträge, 40, JobState::Waiting, true},
                        Case{qxtJobKundenVerträgedel, 40, JobState::Deleted, false},
                        Case{qxtJobAuftragsPos, 50, JobState::Waiting, false}}) {
    EXPECT_EQ(kindOf(c.code), c.kind) << c.code;
    EXPECT_EQ(stateOf(c.code), c.state) << c.code;
    EXPECT_EQ(withState(c.kind, c.state), c.code);
    EXPECT_EQ(isWaitingHeader(c.code), c.waitingHeader) << c.code;
  }
  EXPECT_EQ(withState(qxtJobKundenError, JobState::Waiting), qxtjobkunden) << "a state replaces another";
}

template <class... Codes>
std::vector<int> numbers(Codes... codes) {
  return {static_cast<int>(codes)...};
}

TEST(JobCodes, AreTheStatedNumbers) {
  EXPECT_EQ(numbers(qxtJobTypeKunden, qxtJobTypeVerträge, qxtJobTypeAufträge, qxtJobTypeKundenFehler,
                    qxtJobTypeVerträgeFehler, qxtJobTypeAufträgeFehler, qxtJobTypeKundenErledigt,
                    qxtJobTypeVerträgeErledigt, qxtJobTypeAufträgeErledigt, qxtJobTypeSubItem),
            (std::vector{10, 20, 30, -11, -21, -31, 11, 21, 31, 1001}));
  EXPECT_EQ(numbers(qxtjobkunden, qxtjobverträge, qxtJobAufträge, qxtjobkundenverträge, qxtJobAuftragsPos),
            (std::vector{10, 20, 30, 40, 50}));
  EXPECT_EQ(numbers(qxtJobKundenWarning, qxtJobVerträgeWarning, qxtJobAufträgeWarning,
                    qxtJobKundenVerträgeWarning, qxtJobKundenError, qxtJobVerträgeError, qxtJobAufträgeError,
                    qxtJobKundenVerträgeError),
            (std::vector{11, 21, 31, 41, 12, 22, 32, 42}));
  EXPECT_EQ(numbers(qxtJobKundenDone, qxtJobVerträgeDone, qxtJobAufträgeDone, qxtjobkundenverträgedone,
                    qxtJobKundenVerträgedel),
            (std::vector{13, 23, 33, 43, 44}));
}

TEST(Enumerations, HaveTheStatedValues) {
  EXPECT_EQ(numbers(qxtImportTypeNewOrUpdate, qxtImportTypeNewOnly, qxtImportTypeUpdateOnly),
            (std::vector{0, 1, 2}));
  EXPECT_EQ(numbers(ImportType::Waiting, ImportType::Warning, ImportType::Error, ImportType::Done),
            (std::vector{0, 1, 2, 4}))
      << "another scale than the units digit of a code";
  EXPECT_EQ(numbers(qxProcessState::ProcessAll, qxProcessState::ProcessKunden,
                    qxProcessState::ProcessVerträge, qxProcessState::ProcessAufträge,
                    qxProcessState::ProcessZubehör),
            (std::vector{0, 1, 2, 4, 8}));
  EXPECT_EQ(numbers(qxtViewJobForm_Nothing, qxtViewJobForm_Load, qxtViewJobForm_Unload),
            (std::vector{0, 1, 2}));
  EXPECT_EQ(numbers(CheckStatus::Clean, CheckStatus::Warning, CheckStatus::Error), (std::vector{10, 20, 30}));
  EXPECT_EQ(numbers(JobState::Waiting, JobState::Warning, JobState::Error, JobState::Done, JobState::Deleted),
            (std::vector{0, 1, 2, 3, 4}));
}

TEST(Findings, OnlyRaiseTheStatus) {
  EXPECT_EQ(worse(CheckStatus::Warning, CheckStatus::Clean), CheckStatus::Warning);
  EXPECT_EQ(worse(CheckStatus::Clean, CheckStatus::Error), CheckStatus::Error);
}

/// A job with positions of the keys given.
ImportJob jobWith(std::initializer_list<std::string_view> keys) {
  ImportJob job;
  for (const auto key : keys) {
    job.NewSubItem();
    job.SubItem->ChildID = key;
    EXPECT_TRUE(job.AddSubItem());
  }
  return job;
}

TEST(PositionCursor, OfAJobWithoutPositionsStaysAtTheEnd) {
  ImportJob job;
  const auto before = job.SubItem;
  EXPECT_TRUE(job.SubItemEof());
  job.SubItemMoveFirst();
  EXPECT_EQ(job.SubItem, before);
  job.SubItemMovePrev();
  EXPECT_TRUE(job.SubItemEof()) << "the cursor stays at 0, so there was nothing to step back to";
}

TEST(PositionCursor, ReadsAllPositionsInTheirOrder) {
  ImportJob job = jobWith({"A", "B", "C"});
  std::string read;
  for (job.SubItemMoveFirst(); !job.SubItemEof(); job.SubItemMoveNext()) read += job.SubItem->ChildID;
  EXPECT_EQ(read, "ABC");
  EXPECT_EQ(job.SubItemCount(), 3);
}

TEST(PositionCursor, StandsBeforeTheFirstPositionAtTheStart) {
  ImportJob job = jobWith({"A", "B"});
  EXPECT_FALSE(job.SubItemEof());
  job.SubItemMoveNext();
  EXPECT_EQ(job.SubItem->ChildID, "A");
}

TEST(PositionCursor, KeepsTheLastPositionBeyondTheEndAndComesBackToIt) {
  ImportJob job = jobWith({"A", "B"});
  job.SubItemMoveFirst();
  job.SubItemMoveNext();
  job.SubItemMoveNext();
  EXPECT_TRUE(job.SubItemEof());
  EXPECT_EQ(job.SubItem->ChildID, "B");
  job.SubItemMoveFirst();
  job.SubItemMoveNext();
  job.SubItemMoveNext();
  job.SubItemMovePrev();
  EXPECT_FALSE(job.SubItemEof());
  EXPECT_EQ(job.SubItem->ChildID, "B");
}

TEST(PositionCursor, FailsWhenItStepsBackToWhereNoPositionIs) {
  ImportJob job = jobWith({"A", "B"});
  job.SubItemMoveFirst();
  EXPECT_THROW(job.SubItemMovePrev(), std::out_of_range) << "before the first";
  EXPECT_NO_THROW(job.SubItemMovePrev()) << "the cursor had moved to 0 already";
  EXPECT_EQ(job.SubItem->ChildID, "A") << "the current position is kept";
  for (int i = 0; i < 4; ++i) job.SubItemMoveNext();
  EXPECT_THROW(job.SubItemMovePrev(), std::out_of_range) << "from two beyond the end";
  job.SubItemMovePrev();
  EXPECT_EQ(job.SubItem->ChildID, "B");
}

TEST(Positions, AreRefusedUnderAKeyThatIsTaken) {
  ImportJob job = jobWith({"AB"});
  job.SubItem->Menge = 1;
  job.NewSubItem();
  job.SubItem->ChildID = "ab";
  job.SubItem->Menge = 2;
  EXPECT_FALSE(job.AddSubItem()) << "keys compare without regard to case";
  EXPECT_EQ(job.SubItemCount(), 1);
  EXPECT_EQ(job.SubItems().Item("AB")->Menge, 1);
  EXPECT_EQ(job.SubItem->Menge, 2) << "the refused position is still the current one";
}

TEST(Jobs, AreFoundAndRemovedByPositionAndByKey) {
  ImportJobs jobs;
  for (const std::string_view key : {"J1", "J2", "J3"}) {
    auto job = std::make_shared<ImportJob>();
    job->JobID = key;
    EXPECT_TRUE(jobs.Add(job));
  }
  EXPECT_FALSE(jobs.Add(nullptr));
  EXPECT_EQ(jobs.Item(1), jobs.Item("j1"));
  jobs.Remove("J2");
  EXPECT_EQ(jobs.Item(2)->JobID, "J3") << "positions close up";
  EXPECT_THROW(jobs.Remove(3), std::out_of_range);
  EXPECT_THROW(jobs.Remove(0), std::out_of_range);
  EXPECT_THROW(static_cast<void>(jobs.Item("J2")), std::out_of_range);
  EXPECT_EQ(jobs.Count(), 2);
  jobs.Remove(1);
  std::string rest;
  for (const auto& job : jobs) rest += job->JobID;
  EXPECT_EQ(rest, "J3");
}

TEST(Jobs, AreFoundByTheKeyTheyWereAddedWithHoweverManyThereAre) {
  ImportJobs jobs;
  constexpr int number = 60'000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < number; ++i) {
    auto job = std::make_shared<ImportJob>();
    job->JobID = "A COMMON BEGINNING OF KEYS " + std::to_string(i);
    ASSERT_TRUE(jobs.Add(job));
  }
  // Comparing every key with every other one takes minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(jobs.Item("a common beginning of keys 59999"), jobs.Item(number));
  jobs.Item(2)->JobID = "renamed";
  EXPECT_EQ(jobs.Item("A COMMON BEGINNING OF KEYS 1"), jobs.Item(2));
  jobs.Remove(1);
  EXPECT_EQ(jobs.Item("A COMMON BEGINNING OF KEYS 59999"), jobs.Item(number - 1));
}

} // namespace
} // namespace qx
