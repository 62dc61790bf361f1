#include "store/import_job_object.h"

#include "adapters/sqlite/sqlite_database.h"
#include "job_file_fixture.h"

#include <stdexcept>

using namespace qx;

namespace {

class ImportJobObjectTest : public JobFileTest {
protected:
  ImportJobObjectTest() {
    object.ActiveConnection(erp.path);
    EXPECT_TRUE(object.ConnectDB()) << erp.diagnostics.text();
  }
  static std::shared_ptr<ImportJob> job(const std::string& jobId, std::int16_t code,
                                        const std::vector<std::string>& positions = {}) {
    auto made = std::make_shared<ImportJob>();
    made->JobID = jobId;
    made->JobType = code;
    for (const std::string& childId : positions) {
      made->NewSubItem();
      made->SubItem->JobID = jobId;
      made->SubItem->ChildID = childId;
      made->SubItem->JobType = qxtJobTypeSubItem;
      made->SubItem->Positionsnummer = static_cast<std::int32_t>(made->SubItemCount()) * 8 + 2;
      made->AddSubItem();
    }
    return made;
  }
  /// Writes through another connection, which the object's does not notice.
  void stage(std::string_view jobId, std::int16_t code) {
    execute(sql("Insert Into ImportKopf (JobID, JobType) Values ('"_sql, value(jobId), "', "_sql,
                number(code), ")"_sql));
  }

  SqliteDatabase database;
  ImportJobObject object{erp.environment, database};
};

} // namespace

TEST_F(ImportJobObjectTest, StoredJobsComeBackWithTheirPositionsInTheOrderOfTheNumbersTexts) {
  EXPECT_TRUE(object.LoadFromDatabase());
  EXPECT_EQ(object.Count(), 0);
  EXPECT_TRUE(object.Eof());
  const auto stored = job("K1", 10, {"zwei", "zehn"});
  stored->Eingagsdatum = "01.02.2006";
  stored->AdresseAendernJN = true;
  stored->Währung = "EUR";
  stored->IndFild1 = "kennt diese Version nicht";
  stored->SubItems().Item(1)->Menge = 2.5;
  EXPECT_TRUE(object.StoreItemToDB(*stored));
  EXPECT_EQ(keys("Select Eingangsdatum From ImportKopf Where IndFild1 Is Null And ImportType Is Null"_sql),
            "01.02.2006 ");
  ASSERT_TRUE(object.LoadFromDatabase());
  const auto loaded = object.GetItem("k1");
  EXPECT_EQ(loaded, object.GetItem(1));
  EXPECT_EQ(loaded->Eingagsdatum, "01.02.2006");
  EXPECT_TRUE(loaded->AdresseAendernJN);
  EXPECT_FALSE(loaded->ZahlungsartAendernJN);
  EXPECT_EQ(loaded->Währung, "EUR");
  EXPECT_EQ(loaded->SubItems().Item(1)->ChildID, "zehn");
  EXPECT_EQ(loaded->SubItems().Item(2)->Menge, 2.5);
  // Loading again does not double them.
  EXPECT_TRUE(object.LoadFromDatabase());
  EXPECT_EQ(object.Count(), 1);
}

TEST_F(ImportJobObjectTest, StoringAddsAndNeverOverwrites) {
  EXPECT_TRUE(object.StoreItemToDB(*job("K1", 10, {"P1"})));
  const auto twice = job("K1", 20);
  EXPECT_FALSE(object.StoreItemToDB(*twice));
  // Header and positions are one unit: the position is refused, so the header goes.
  EXPECT_FALSE(object.StoreItemToDB(*job("K2", 10, {"P2", "P1"})));
  EXPECT_EQ(jobs() + positions(), "K1 P1 ");
  object.JobItem = job("K1", 10, {"P3"});
  EXPECT_TRUE(object.StoreSubItemToDB());
  EXPECT_FALSE(object.StoreSubItemToDB());
  object.JobItem = nullptr;
  EXPECT_FALSE(object.StoreSubItemToDB());
  EXPECT_EQ(positions(), "P1 P3 ");
  EXPECT_TRUE(erp.desktop.shown.empty());
}

TEST_F(ImportJobObjectTest, AnUpdateTouchesItsColumnsOnlyAndShowsItsFailure) {
  stage("K1", 12);
  execute(sql("Update ImportKopf Set IndFild1 = 'bleibt', Bez1 = 'alt', ProcessWarning = 1"_sql));
  const auto changed = job("K1", 10);
  changed->Bez1 = "neu";
  EXPECT_TRUE(object.UpdateItem(*changed, "K1"));
  EXPECT_EQ(keys("Select JobType || Bez1 || IndFild1 || ProcessWarning From ImportKopf"_sql),
            "10neubleibt1 ");
  // The record's own key does not become that of the row: its positions name it.
  changed->JobID = "anders";
  EXPECT_TRUE(object.UpdateItem(*changed, "K1"));
  changed->JobID.clear();
  EXPECT_TRUE(object.UpdateItem(*changed, "K1"));
  EXPECT_EQ(jobs(), "K1 ");
  EXPECT_FALSE(object.UpdateItem(*changed, "fehlt"));
  EXPECT_FALSE(object.UpdateSubItem(*job("K1", 10, {"P1"})->SubItem, "P1"));
  ASSERT_EQ(erp.desktop.shown.size(), 2U);
  EXPECT_TRUE(erp.desktop.shown[0].text.starts_with("Fehler beim Update: ")) << erp.desktop.shown[0].text;
  EXPECT_GT(erp.desktop.shown[0].text.size(), 20U);
  object.SaveSubItem(*job("K1", 10, {"P1"})->SubItem);
  const auto moved = job("K1", 10, {"P1"})->SubItem;
  moved->Positionsnummer = 77;
  EXPECT_TRUE(object.UpdateSubItem(*moved, "P1"));
  EXPECT_EQ(keys("Select Positionsnummer From ImportPos"_sql), "77 ");
}

TEST_F(ImportJobObjectTest, ArchivesAreDoneInTheSenseOfThisVersion) {
  // 11, 21, 31 and 41 carry warnings in version 2 and go all the same; what is done there ends in 3.
  for (const std::int16_t code : {10, 11, 21, 31, 41, 13, 23, 33, 43, 12, 44, -11, -21, -31})
    stage("j" + std::to_string(code), code);
  object.DelArchives();
  EXPECT_EQ(jobs(), "j-11 j-21 j-31 j10 j12 j13 j23 j33 j43 j44 ");
}

TEST_F(ImportJobObjectTest, APositionsKeyDeletesThatPositionOnly) {
  object.StoreItemToDB(*job("K1", 10, {"P1", "P2"}));
  object.DelItem("P1");
  EXPECT_EQ(jobs() + positions(), "K1 P2 ");
  object.DelItem("K1");
  EXPECT_EQ(jobs() + positions(), "");
}

TEST_F(ImportJobObjectTest, TheCursorWalksTheLoadedJobs) {
  object.MoveFirst();
  EXPECT_TRUE(object.Eof());
  const auto first = job("K1", 10);
  EXPECT_TRUE(object.AddItem(first));
  EXPECT_FALSE(object.AddItem(job("K1", 20)));
  EXPECT_TRUE(object.AddItem(job("K2", 20, {"P1"})));
  EXPECT_EQ(jobs(), "");
  object.MoveFirst();
  EXPECT_EQ(object.JobItem, first);
  object.MoveNext();
  object.MoveNext();
  EXPECT_TRUE(object.Eof());
  EXPECT_EQ(object.JobItem->JobID, "K2");
  object.MovePrev();
  object.MovePrev();
  EXPECT_EQ(object.JobItem, first);
  EXPECT_THROW(object.MovePrev(), std::out_of_range);
  JobTypeConstants code = qxtJobTypeKunden;
  object.SubItemGetParentType("P1", code);
  EXPECT_EQ(code, qxtJobTypeVerträge);
  object.RemoveAll();
  EXPECT_EQ(object.Count(), 0);
  EXPECT_THROW(object.GetItem("K1"), std::out_of_range);
}

TEST_F(ImportJobObjectTest, WithoutAConnectionMembersAnswerFalse) {
  ImportJobObject unconnected(erp.environment, database);
  ImportJobObject* shown = nullptr;
  unconnected.JobViewShow(shown);
  EXPECT_EQ(shown, nullptr);
  EXPECT_EQ(erp.desktop.texts(), "Bitte geben Sie eine Connection an.\n");
  EXPECT_FALSE(unconnected.ConnectDB());
  EXPECT_FALSE(unconnected.LoadFromDatabase());
  EXPECT_FALSE(unconnected.StoreItemToDB(*job("K1", 10)));
  unconnected.DelArchives();
  unconnected.ActiveConnection((erp.folder.path() / "fehlt.db").string());
  EXPECT_FALSE(unconnected.ConnectDB());
  object.JobViewShow(shown);
  EXPECT_EQ(shown, &object);
  EXPECT_EQ(erp.jobView.opened, 1);
}

TEST_F(ImportJobObjectTest, FilesTravelWithBothKindsOfLines) {
  const auto stored = job("K1", -11, {"P1", "P2"});
  stored->Fehlertext = "falsch";
  stored->SubItems().Item(1)->Preis = 0.1;
  object.StoreItemToDB(*stored);
  stage("K2", 10);
  stage("K3", 44);
  EXPECT_TRUE(object.Export(file("a.aim")));
  execute(sql("Delete From ImportKopf"_sql));
  execute(sql("Delete From ImportPos"_sql));
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(object.Import(file("a.aim"))) << erp.diagnostics.text();
    EXPECT_EQ(jobs() + positions(), "K1 K2 P1 P2 ");
    EXPECT_EQ(keys("Select Preis From ImportPos Where ChildID = 'P1' And JobType = 1001"_sql), "0.1 ");
    EXPECT_EQ(keys("Select JobType || Fehlertext From ImportKopf Where JobID = 'K1'"_sql), "-11falsch ");
  }
  EXPECT_FALSE(object.Import(file("fehlt.aim")));
}

TEST_F(ImportJobObjectTest, APositionOfAnOrderStaysOneWhenAFileOfThisVersionIsRead) {
  stage("A1", 30);
  execute(sql("Insert Into ImportPos (JobID, ChildID, JobType) Values ('A1', 'P1', 50)"_sql));
  ASSERT_TRUE(object.Export(file("a.aim")));
  ASSERT_TRUE(object.Import(file("a.aim"))) << erp.diagnostics.text();
  EXPECT_EQ(keys("Select JobType From ImportPos"_sql), "50 ");
  execute(sql("Delete From ImportPos"_sql));
  ASSERT_TRUE(object.Import(file("a.aim")));
  EXPECT_EQ(keys("Select JobType From ImportPos"_sql), "1001 ");
}

TEST_F(ImportJobObjectTest, APositionFollowsItsOwnHeader) {
  const auto header = [](const std::string& jobId) { return fileLine(39, {"10", jobId}); };
  const auto line = [](const std::string& jobId, const std::string& childId) {
    return fileLine(8, {"1001", jobId, childId});
  };
  const JobFileReport report =
      importLines(banner1,
                  {line("K1", "früh"), header("K1"), line("K1", "P1"), fileLine(39, {"10", "K2", "x"}),
                   line("K1", "nach Defekt"), header("K3"), line("K1", "fremd"), line("K3", "P3"),
                   fileLine(39, {"44", "K4"}), line("K3", "nach 44")},
                  JobFileVersion::One);
  EXPECT_EQ(observer.told, "2: the position does not follow its header\n"
                           "5: Status cannot be 'x'\n"
                           "6: the position does not follow its header\n"
                           "8: the position does not follow its header\n"
                           "11: the position does not follow its header\n");
  EXPECT_EQ(report.counts.skipped, 1);
  EXPECT_EQ(jobs() + positions(), "K1 K3 P1 P3 ");
}
