// Deleting by date, and the content of the about box.
#include "platform/failure.h"
#include "support/test_erp.h"
#include "ui/about_box.h"
#include "ui/delete_by_date_presenter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <system_error>

namespace qx {
namespace {

TEST(MonthBefore, IsTheSameDayOrTheLastOneOfAShorterMonth) {
  for (const auto& [day, expected] : {std::pair{"24.11.2026", "24.10.2026"},
                                      {"15.01.2026", "15.12.2025"},
                                      {"31.03.2026", "28.02.2026"},
                                      {"30.03.2028", "29.02.2028"},
                                      {"31.12.2026", "30.11.2026"},
                                      {"28.02.2026", "28.01.2026"}})
    EXPECT_EQ(germanDate(monthBefore(parseGermanDate(day).value())), expected) << day;
}

class SmallDialogs : public ::testing::Test {
protected:
  TestErp erp;
  ImportJobObject2 engine{erp.environment};
  DeleteByDatePresenter deletion{erp.environment, engine};
};

TEST_F(SmallDialogs, TheDayProposedGoesByTheSession) {
  erp.setSessionDate(makeDate(2026, 3, 31));
  EXPECT_EQ(germanDate(deletion.proposedDate()), "28.02.2026");
  erp.environment.session = nullptr;
  EXPECT_EQ(germanDate(deletion.proposedDate()), "24.10.2026") << "the workstation's";
}

TEST_F(SmallDialogs, ADayIsConfirmedWithTheNumberOfJobsAndARubbishOneIsRefused) {
  erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('A', 13, '01.01.2026'), "
              "('B', 33, '31.12.2025'), ('C', 33, '02.01.2026'), ('D', 30, '01.01.2020'), "
              "('E', 13, 'gestern')"_sql);
  EXPECT_FALSE(deletion.confirmedDate("31.02.2026"));
  EXPECT_FALSE(deletion.confirmedDate("01.01.2001"));
  ASSERT_EQ(erp.desktop.shown.size(), 2U);
  EXPECT_EQ(erp.desktop.shown[0].text, "'31.02.2026' ist kein Datum (tt.mm.jjjj).");
  EXPECT_EQ(erp.desktop.shown[1].text, "Kein erledigter Vorgang ist vor dem 01.01.2001 eingegangen.");
  EXPECT_TRUE(erp.desktop.asked.empty());
  EXPECT_FALSE(deletion.confirmedDate("2.1.2026"));
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(erp.desktop.asked[0].text, "2 erledigte Vorgänge sind vor dem 02.01.2026 eingegangen.\r\n"
                                       "Sollen sie endgültig gelöscht werden?");
  erp.desktop.answer = true;
  const auto day = deletion.confirmedDate("01.01.2026");
  ASSERT_TRUE(day);
  EXPECT_EQ(erp.desktop.asked.back().text, "Ein erledigter Vorgang ist vor dem 01.01.2026 eingegangen.\r\n"
                                           "Soll er endgültig gelöscht werden?");
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 5);
}

TEST(GermanCause, SaysInGermanWhatADatabaseSaysInEnglish) {
  EXPECT_EQ(germanCause(BusyError("erp.db: database is locked", 5)),
            "Die Datenbank wird gerade von einem anderen Programm benutzt.");
  EXPECT_EQ(germanCause(StoreError("erp.db: disk I/O error", 10)),
            "Die Datenbank kann nicht gelesen oder geschrieben werden.");
  EXPECT_EQ(germanCause(std::system_error(EIO, std::generic_category(), "jobs.edi")),
            "Die Datei kann nicht gelesen oder geschrieben werden.");
  EXPECT_EQ(germanCause(std::system_error(ENOSPC, std::generic_category(), "jobs.edi")),
            "Der Datenträger ist voll.");
  EXPECT_EQ(germanCause(StatementError("Der Vorgang ist nicht mehr vorhanden.", 0)),
            "Der Vorgang ist nicht mehr vorhanden.");
}

TEST_F(SmallDialogs, JobsThatTheDatabaseKeepsAreNamedInABox) {
  erp.execute("Create Trigger bleibt Before Delete On ImportKopf When old.JobID = 'B' Begin "
              "Select raise(rollback, 'nein'); End"_sql);
  const std::string box = "Fehler beim Löschen: Die Datenbank lehnt es ab, diese Vorgänge zu löschen: B";
  for (const bool byDate : {true, false}) {
    erp.execute("Delete From ImportKopf Where JobID <> 'B'"_sql);
    erp.execute("Insert Or Ignore Into ImportKopf (JobID, JobType, Eingangsdatum) Values "
                "('A', 13, '01.01.2026'), ('B', 13, '01.01.2026'), ('C', 13, '01.01.2026')"_sql);
    erp.desktop.shown.clear();
    if (byDate)
      deletion.deleteBefore(makeDate(2026, 2, 1));
    else
      engine.DelArchives();
    EXPECT_EQ(erp.text("Select group_concat(JobID) From ImportKopf"_sql), "B");
    ASSERT_EQ(erp.desktop.shown.size(), 1U);
    EXPECT_EQ(erp.desktop.shown[0].text, box);
  }
}

TEST_F(SmallDialogs, ADeletionThatFailsIsTold) {
  erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('A', 13, '01.01.2026')"_sql);
  erp.execute("Pragma query_only = 1"_sql);
  deletion.deleteBefore(makeDate(2026, 11, 24));
  ASSERT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_EQ(erp.desktop.shown[0].icon, MessageIcon::Critical);
  EXPECT_EQ(erp.desktop.shown[0].text,
            "Fehler beim Löschen: Sie dürfen die Datenbank lesen, aber nicht ändern.");
}

TEST_F(SmallDialogs, TheSystemInformationNamesDatabaseUserAndDate) {
  EXPECT_EQ(erpVersion(erp.environment), "6.3.0");
  const auto lines = workInformation(erp.environment);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0].value, erp.file);
  EXPECT_NE(lines[1].value.find("KB"), std::string::npos);
  EXPECT_EQ(lines[2].value, "pruefer");
  EXPECT_EQ(lines[3].value, "24.11.2026");
  erp.environment.session = nullptr;
  EXPECT_EQ(informationText({workInformation(erp.environment)[3]}), "Sitzungsdatum: nicht bekannt\n");
}

} // namespace
} // namespace qx
