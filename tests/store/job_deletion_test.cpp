#include "store/job_deletion.h"

#include "support/erp_file.h"
#include "support/recording_connection.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class JobDeletionTest : public ::testing::Test {
protected:
  void stage(std::string_view jobId, std::int16_t jobType, std::string_view customer = "100",
             std::string_view received = "01.02.2006") {
    erp.execute("Insert Into ImportKopf (JobID, JobType, Kundennummer, Eingangsdatum) Values ('"_sql,
                value(jobId), "', "_sql, number(jobType), ", '"_sql, value(customer), "', '"_sql,
                value(received), "')"_sql);
  }
  void stagePosition(std::string_view jobId, std::string_view childId) {
    erp.execute("Insert Into ImportPos (JobID, ChildID) Values ('"_sql, value(jobId), "', '"_sql,
                value(childId), "')"_sql);
  }
  std::string jobs() { return erp.keys("Select JobID From ImportKopf Order By JobID"_sql); }
  std::string positions() { return erp.keys("Select ChildID From ImportPos Order By ChildID"_sql); }

  ErpFile erp;
  JobDeletion deletion{erp.environment};
};

} // namespace

TEST_F(JobDeletionTest, ACustomerTakesItsContractsAlongButNotTheDoneOnes) {
  stage("k", 12);
  for (const int state : {0, 1, 2, 3, 4})
    stage("v4" + std::to_string(state), static_cast<std::int16_t>(40 + state));
  stage("v20", 20);
  stage("other", 40, "200");
  stagePosition("v40", "p40");
  deletion.DelItem("k");
  EXPECT_EQ(deletion.deletedHeaders(), 1);
  stage("k", 12);
  deletion.DelItem("k", true);
  EXPECT_EQ(jobs(), "other v20 v43 ");
  EXPECT_EQ(deletion.deletedHeaders(), 6);
  // Only the headers of the contracts go.
  EXPECT_EQ(positions(), "p40 ");
}

TEST_F(JobDeletionTest, EveryCustomerCodeAndNoOtherTakesContractsAlong) {
  for (const std::int16_t type : {10, 11, 12, 13, 14, 20, 30}) {
    const std::string number = std::to_string(type);
    stage("k" + number, type, number);
    stage("v" + number, 40, number);
    deletion.DelItem("k" + number, true);
  }
  EXPECT_EQ(jobs(), "v14 v20 v30 ");
}

TEST_F(JobDeletionTest, APositionsKeyDeletesJustThatPosition) {
  stage("a", 30);
  stagePosition("a", "p1");
  stagePosition("a", "p2");
  deletion.DelItem("p1", true);
  EXPECT_EQ(jobs(), "a ");
  EXPECT_EQ(positions(), "p2 ");
  EXPECT_EQ(deletion.deletedHeaders(), 0);
  deletion.DelItem("a");
  EXPECT_EQ(jobs() + positions(), "");
}

TEST_F(JobDeletionTest, ArchivesAreTheDoneJobsOfEveryKind) {
  for (const std::int16_t type : {10, 11, 12, 13, 23, 30, 33, 43, 44, -11, -13})
    stage("j" + std::to_string(type), type);
  deletion.DelArchives();
  EXPECT_EQ(jobs(), "j-11 j10 j11 j12 j30 j44 ");
  EXPECT_EQ(deletion.deletedHeaders(), 5);
}

TEST_F(JobDeletionTest, ByDateOnlyStrictlyEarlierReadableDatesGo) {
  stage("before", 13, "100", "14.01.2006");
  stage("short", 23, "100", "2.1.06");
  stage("timed", 33, "100", "14.01.2006 23:59");
  stage("same", 13, "100", "15.01.2006");
  // As a text earlier than 15.01.2006.
  stage("later", 13, "100", "02.12.2006");
  stage("waiting", 10, "100", "01.01.2000");
  stage("unreadable", 13, "100", "31.02.2005");
  stage("empty", 13, "100", "");
  deletion.deleteDoneBefore(makeDate(2006, 1, 15));
  EXPECT_EQ(jobs(), "empty later same unreadable waiting ");
  EXPECT_EQ(erp.diagnostics.entries.size(), 2U) << erp.diagnostics.text();
}

TEST_F(JobDeletionTest, AJobThatTheDatabaseKeepsStaysWholeAndTheOthersGo) {
  const struct {
    Sql trigger;
    std::string_view reason;
  } cases[] = {
      {sql("Create Trigger Verbot Before Delete On ImportKopf When old.JobID = 'b' Begin Select Raise(Abort, 'nein'); End"_sql),
       "nein"},
      {sql("Create Trigger Verbot Before Delete On ImportKopf When old.JobID = 'b' Begin Select Raise(Ignore); End"_sql),
       "the database did not delete the job"},
      {sql("Create Trigger Verbot Before Delete On ImportKopf When old.JobID = 'b' Begin Select Raise(Rollback, 'nie'); End"_sql),
       "nie"},
      {sql("Create Trigger Verbot After Delete On ImportPos When old.JobID = 'b' Begin Select Raise(Abort, 'nein'); End"_sql),
       "nein"},
      {sql("Create Trigger Verbot After Delete On ImportPos When old.JobID = 'b' Begin Select Raise(Rollback, 'nie'); End"_sql),
       "nie"},
  };
  for (const auto& c : cases) {
    for (const char* job : {"a", "b", "c"}) {
      stage(job, 13);
      stagePosition(job, std::string("p") + job);
    }
    erp.connection().execute(c.trigger);
    erp.diagnostics.entries.clear();
    JobDeletion one(erp.environment);
    one.DelArchives();
    EXPECT_EQ(jobs() + positions(), "b pb ") << c.trigger.text();
    EXPECT_EQ(one.deletedHeaders(), 2) << c.trigger.text();
    ASSERT_EQ(one.left().size(), 1U) << c.trigger.text();
    EXPECT_EQ(one.left().begin()->first, "b");
    EXPECT_NE(one.left().begin()->second.find(c.reason), std::string::npos) << one.left().begin()->second;
    EXPECT_FALSE(erp.diagnostics.entries.empty());
    EXPECT_EQ(erp.diagnostics.entries.back().job, "b");
    erp.execute("Drop Trigger Verbot"_sql);
    erp.execute("Delete From ImportKopf"_sql);
    erp.execute("Delete From ImportPos"_sql);
  }
}

TEST_F(JobDeletionTest, JobsAreCommittedInGroupsWhoeverAsks) {
  const auto recording = std::make_shared<RecordingConnection>(erp.environment.connection);
  erp.environment.connection = recording;
  const auto commitsOf = [&](std::int16_t code, const std::function<void()>& work) {
    {
      WorkUnit unit(erp.connection());
      for (int i = 0; i < 3000; ++i) stage("j" + std::to_string(i), code);
      unit.commit();
    }
    recording->commits = 0;
    work();
    EXPECT_EQ(jobs(), "");
    return recording->commits;
  };
  // The clock of the test stands still: a group ends with its hundredth job.
  EXPECT_EQ(commitsOf(13, [&] { deletion.DelArchives(); }), 30);
  EXPECT_EQ(commitsOf(13, [&] { deletion.deleteDoneBefore(makeDate(2026, 1, 1)); }), 30);
  EXPECT_EQ(
      commitsOf(10,
                [&] { deletion.delItems(deletion.jobIds(sql("Select JobID From ImportKopf"_sql)), true); }),
      31)
      << "the first one makes the counter of the changes";
  EXPECT_EQ(deletion.deletedHeaders(), 9000);
}

TEST_F(JobDeletionTest, AJobStagedAfreshMeanwhileStays) {
  stage("a", 13);
  stage("b", 13);
  const std::vector<std::string> found = deletion.jobIds(sql("Select JobID From ImportKopf"_sql));
  erp.secondConnection()->execute(sql("Update ImportKopf Set JobType = 10 Where JobID = 'a'"_sql));
  deletion.deleteDone(found);
  EXPECT_EQ(jobs(), "a ");
}

TEST_F(JobDeletionTest, OneJobIsAPartOfACallersUnit) {
  stage("a", 13);
  {
    WorkUnit unit(erp.connection());
    deletion.DelItem("a");
    EXPECT_EQ(jobs(), "");
  }
  EXPECT_EQ(jobs(), "a ");
}

TEST_F(JobDeletionTest, ThePurgeFollowsItsSettings) {
  const struct {
    std::string_view on;
    std::string_view left, info;
  } cases[] = {
      {"KundeDelete", "a23 a33 a43 ", "Archivdaten werden gelöscht (Kunden)"},
      {"VTDelete", "a13 a23 a33 ", "Archivdaten werden gelöscht (Verträge)"},
      {"AuftragDelete", "a13 a23 a43 ", "Archivdaten werden gelöscht (Aufträge)"},
      {"", "a13 a23 a33 a43 ", ""},
  };
  for (const auto& c : cases) {
    erp.execute("Delete From ImportKopf"_sql);
    for (const std::int16_t type : {13, 23, 33, 43}) stage("a" + std::to_string(type), type);
    for (const char* key : {"KundeDelete", "VTDelete", "AuftragDelete"})
      erp.set(key, key == c.on ? "1" : "2");
    std::string info;
    EXPECT_TRUE(purgeArchives(
        deletion, PurgeOptions::read(Settings(erp.environment)), [&](std::string_view text) { info += text; },
        [] { return true; }));
    EXPECT_EQ(jobs(), c.left) << c.on;
    EXPECT_EQ(info, c.info);
  }
}
