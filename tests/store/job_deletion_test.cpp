#include "store/archive_purge.h"
#include "store/job_deletion.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class JobDeletionTest : public ::testing::Test {
protected:
  void stage(std::string_view jobId, std::int16_t jobType, std::string_view customer = "100",
             std::string_view received = "01.02.2006") {
    erp.connection().execute(sql(
        "Insert Into ImportKopf (JobID, JobType, Kundennummer, Eingangsdatum) Values ('"_sql, value(jobId),
        "', "_sql, number(jobType), ", '"_sql, value(customer), "', '"_sql, value(received), "')"_sql));
  }
  void stagePosition(std::string_view jobId, std::string_view childId) {
    erp.connection().execute(sql("Insert Into ImportPos (JobID, ChildID) Values ('"_sql, value(jobId),
                                 "', '"_sql, value(childId), "')"_sql));
  }
  std::string keys(const Sql& statement) {
    std::string text;
    const auto rows = erp.connection().open(statement);
    for (; !rows->eof(); rows->moveNext()) text += rows->value(std::size_t{0}).text() + " ";
    return text;
  }
  std::string jobs() { return keys(sql("Select JobID From ImportKopf Order By JobID"_sql)); }
  std::string positions() { return keys(sql("Select ChildID From ImportPos Order By ChildID"_sql)); }

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
  int jobsDone = 0;
  deletion.DelArchives([&] { ++jobsDone; });
  EXPECT_EQ(jobs(), "j-11 j10 j11 j12 j30 j44 ");
  EXPECT_EQ(jobsDone, 5);
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

TEST_F(JobDeletionTest, ARefusedStatementDoesNotKeepTheNextFromRunning) {
  stage("a", 30);
  stagePosition("a", "p1");
  erp.connection().execute(sql("Create Trigger Verbot Before Delete On ImportKopf Begin "
                               "Select Raise(Abort, 'nicht erlaubt'); End"_sql));
  deletion.DelItem("a");
  EXPECT_EQ(jobs(), "a ");
  EXPECT_EQ(positions(), "");
  EXPECT_EQ(deletion.deletedHeaders(), 0);
  ASSERT_EQ(erp.diagnostics.entries.size(), 1U);
  EXPECT_EQ(erp.diagnostics.entries[0].job, "a");
}

TEST_F(JobDeletionTest, AJobStagedAfreshMeanwhileStays) {
  stage("a", 13);
  stage("b", 13);
  const std::vector<std::string> found = deletion.jobIds(sql("Select JobID From ImportKopf"_sql));
  erp.secondConnection()->execute(sql("Update ImportKopf Set JobType = 10 Where JobID = 'a'"_sql));
  deletion.deleteDone(found);
  EXPECT_EQ(jobs(), "a ");
}

TEST_F(JobDeletionTest, ACallersUnitHoldsTheWholeSet) {
  stage("a", 13);
  stage("b", 33);
  {
    WorkUnit unit(erp.connection());
    deletion.DelArchives();
    EXPECT_EQ(erp.secondConnection()->open(sql("Select JobID From ImportKopf"_sql))->recordCount(), 2U);
  }
  EXPECT_EQ(jobs(), "a b ");
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
    erp.connection().execute(sql("Delete From ImportKopf"_sql));
    for (const std::int16_t type : {13, 23, 33, 43}) stage("a" + std::to_string(type), type);
    for (const char* key : {"KundeDelete", "VTDelete", "AuftragDelete"})
      erp.set(key, key == c.on ? "1" : "2");
    std::string info;
    WorkGroup group(erp.environment, nullptr);
    EXPECT_TRUE(ArchivePurge(erp.environment, deletion, group)
                    .run(
                        PurgeOptions::read(Settings(erp.environment)),
                        [&](std::string_view text) { info += text; }, [] { return false; }));
    EXPECT_EQ(jobs(), c.left) << c.on;
    EXPECT_EQ(info, c.info);
  }
}
