// Units of work that the server ends in favour of another program's.
#include "servers/shared_erp.h"

#include "adapters/odbc/connection_string.h"
#include "erp/demo_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qx {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class ServerConflicts : public ::testing::Test {
protected:
  ServerConflicts() {
    // A sequence goes on although the unit that has asked it is rolled back.
    erp.execute("Create Sequence Konflikte"_sql);
    erp.execute("Create Sequence Grenze"_sql);
    erp.execute("Create Function nachgeben() Returns trigger Language plpgsql As $$ Begin "
                "If nextval('Konflikte') <= (Select last_value From Grenze) Then "
                "Raise Exception 'another program was first' Using Errcode = '40001'; End If; "
                "Return Null; End $$"_sql);
  }
  /// The next changes of the table, this many of them, meet another program's.
  void conflict(std::string_view table, int times) {
    erp.execute("Select setval('Grenze', "_sql, number(times), ")"_sql);
    erp.execute("Alter Sequence Konflikte Restart"_sql);
    erp.execute("Create Or Replace Trigger Konflikt After Insert Or Update Or Delete On "_sql, name(table),
                " For Each Statement Execute Function nachgeben()"_sql);
  }
  void peace(std::string_view table) { erp.execute("Drop Trigger Konflikt On "_sql, name(table)); }

  SharedErp erp{Kept::OnTheServer};
};

TEST_F(ServerConflicts, EveryCommandDoesItsUnitAgainSomeTimesAndThenSaysSo) {
  const std::string file = (erp.folder.path() / "jobs.txt").string();
  erp.stageCustomers("K", 3);
  ASSERT_EQ(erp.run({"export", file}).status, 0);
  erp.execute("Update ImportKopf Set JobType = 11 Where JobID = 'K0'"_sql);
  const auto jobs = [&] {
    return erp.listed("Select JobID, JobType, Bez1, ProcessWarning From ImportKopf Order By JobID"_sql);
  };
  erp.execute(
      "Insert Into LockControl (Dateiname, Satz, SessionID, Benutzer) Values ('ImportJob', '1', 'anderswo', "
      "'tot')"_sql);
  struct Command {
    std::vector<std::string> arguments;
    std::string_view table;
  };
  for (const Command& command :
       {Command{{"release", "K0"}, "ImportKopf"}, Command{{"stage", "-"}, "ImportKopf"},
        Command{{"import", file}, "ImportKopf"}, Command{{"delete", "K2"}, "ImportKopf"},
        Command{{"settings", "set", "ImportJob2", "EinVorgang", "1", "--force"}, "Einstellungen"},
        Command{{"lock", "release"}, "LockControl"}, Command{{"process"}, "LockControl"}}) {
    SCOPED_TRACE(command.arguments.front());
    std::vector<std::string> arguments = command.arguments;
    arguments.emplace_back("--verbose");
    const auto before = jobs();
    const auto run = [&] {
      return erp.run(arguments, R"({"type":"Kunde","JobID":"neu","Kundennummer":"N","Bez1":"Firma"})");
    };
    conflict(command.table, 1000);
    const ProgramResult refused = run();
    EXPECT_EQ(refused.status, 4) << refused.messages;
    EXPECT_THAT(refused.messages, AllOf(HasSubstr("gave way to another program, try 7 of 8"),
                                        HasSubstr("another program was first")));
    EXPECT_EQ(jobs(), before);
    conflict(command.table, 3);
    const ProgramResult done = run();
    EXPECT_EQ(done.status, 0) << done.messages;
    EXPECT_THAT(done.messages, AllOf(HasSubstr("try 3 of 8"), Not(HasSubstr("try 4 of 8"))));
    peace(command.table);
  }
  EXPECT_EQ(erp.keys("Select JobType From ImportKopf Order By JobID"_sql), "13 13 13 ") << "K0, K1, neu";
  EXPECT_EQ(erp.lines(), 3);
}

TEST_F(ServerConflicts, AnImportStoresItsWholeGroupAgainAndCountsEachJobOnce) {
  {
    WorkUnit unit(erp.connection());
    erp::stageDemoJobs(erp.connection(), makeDate(2026, 11, 24));
    unit.commit();
  }
  for (const std::string version : {"--json", "--version1"}) {
    const std::string file = (erp.folder.path() / ("jobs" + version)).string();
    ASSERT_EQ(erp.run({"export", file, version}).status, 0);
    const auto rows = [&] {
      return std::pair(erp.listed("Select JobID, JobType, Bez1, Menge From ImportKopf Order By JobID"_sql),
                       erp.listed("Select ChildID, JobID, Menge From ImportPos Order By ChildID"_sql));
    };
    const ProgramResult undisturbed = erp.run({"import", file, version});
    const auto expected = rows();
    for (const std::string_view table : {"ImportKopf", "ImportPos"}) {
      conflict(table, 3);
      const ProgramResult again = erp.run({"import", file, version, "--verbose"});
      EXPECT_THAT(again.messages, HasSubstr("Import: gave way to another program, try 3 of 8"));
      EXPECT_EQ(again.status, undisturbed.status);
      EXPECT_EQ(again.output, undisturbed.output);
      EXPECT_EQ(rows(), expected);
      peace(table);
    }
  }
}

TEST_F(ServerConflicts, AJobThatGivesWayEachTimeFailsAloneWithASentence) {
  erp.stageCustomers("K", 3);
  erp.execute("Create Function immer() Returns trigger Language plpgsql As $$ Begin "
              "Raise Exception 'another program was first' Using Errcode = '40001'; End $$"_sql);
  erp.execute("Create Trigger Konflikt After Insert On Kundenstamm For Each Row When (New.Kundennummer = "
              "'K1') Execute Function immer()"_sql);
  EXPECT_EQ(erp.run({"process"}).status, 1);
  EXPECT_EQ(erp.listed("Select JobID, JobType, Fehlertext From ImportKopf Order By JobID"_sql),
            (std::vector<std::string>{
                "K0|13|",
                "K1|12|Andere Programme haben bei jedem Versuch zur selben Zeit dieselben Daten geändert.",
                "K2|13|"}));
  EXPECT_EQ(erp.keys("Select Text2 From Protokollpositionen Order By Text1"_sql),
            "Erledigt Fehler Erledigt ");
}

TEST_F(ServerConflicts, ARunThatBlocksAnotherProgramAndIsBlockedByItGivesWayAndCompletes) {
  erp.stageCustomers("K", 3);
  const auto set = [&](std::string_view job) {
    erp.execute("Update ImportKopf Set Bez1 = 'Firma' Where JobID = '"_sql, value(job), "'"_sql);
  };
  bool runGaveWay = false;
  for (int tries = 0; tries < 5 && !runGaveWay; ++tries) {
    erp.execute("Update ImportKopf Set JobType = 10"_sql);
    auto unit = std::make_unique<WorkUnit>(erp.connection());
    set("K2");
    ProgramRun run = erp.start({"process", "--verbose"});
    // It holds the first two jobs when it waits for the third.
    erp.awaitWaiting();
    try {
      set("K0");
      unit->commit();
    } catch (const ConflictError&) {
      // The server has chosen this unit.
    }
    unit.reset();
    const ProgramResult result = run.wait();
    EXPECT_EQ(result.status, 0) << result.messages;
    runGaveWay = result.messages.find("try 1 of 8: deadlock detected") != std::string::npos;
  }
  EXPECT_TRUE(runGaveWay);
  EXPECT_EQ(erp.keys("Select JobType From ImportKopf"_sql), "13 13 13 ");
}

TEST_F(ServerConflicts, ProgramsWorkSideBySideAlsoWhereTheServerIsolatesThemFully) {
  constexpr int rounds = 6;
  odbc::ConnectionString text(erp.schema->connectionString());
  text.set("ConnSettings",
           std::string(text.value("ConnSettings")) + ";Set default_transaction_isolation To serializable");
  const std::string way = "odbc:" + text.text();
  erp.stageCustomers("K", 200);
  ProgramRun run = erp.start({"process"}, {}, way);
  for (int i = 0; i < rounds; ++i) {
    const ProgramResult staged =
        erp.run({"stage", "-"},
                R"({"type":"Kunde","Kundennummer":"S)" + std::to_string(i) + R"(","Bez1":"Firma"})", way);
    EXPECT_EQ(staged.status, 0) << staged.messages;
    const ProgramResult released = erp.run({"release", "--all-warnings"}, {}, way);
    EXPECT_EQ(released.status, 0) << released.messages;
  }
  const ProgramResult result = run.wait();
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_EQ(erp.run({"process"}, {}, way).status, 0);
  erp.expectWrittenOnce(200 + rounds);
}

} // namespace
} // namespace qx
