// Several programs on one database: the lock of the import, others beside a run, and number ranges.
#include "adapters/system/processes.h"
#include "servers/shared_erp.h"

#include "erp/number_range.h"
#include "erp/process_identity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <set>

namespace qx {
namespace {

using ::testing::HasSubstr;

class SideBySide : public ::testing::TestWithParam<Kept> {
protected:
  SharedErp erp{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(File, SideBySide, ::testing::Values(Kept::InAFile));
INSTANTIATE_TEST_SUITE_P(Server, SideBySide, ::testing::Values(Kept::OnTheServer));

TEST_P(SideBySide, OfTwoRunsThatStartInTheSameMomentOneWorksAndTheOtherIsRefused) {
  constexpr int rounds = 8;
  constexpr int jobs = 40;
  // A program of this machine that has ended.
  const FixedProcesses ended;
  const erp::ProcessIdentity dead(thisMachine(), ended);
  int refused = 0;
  for (int round = 0; round < rounds; ++round) {
    erp.stageCustomers("K" + std::to_string(round) + "-", jobs);
    // In every other round both find the lock of the dead program.
    if (round % 2 == 1)
      erp.execute("Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values "
                  "('ImportJob', '1', 'unbennant', '"_sql,
                  value(dead.sessionId()), "', 'tot')"_sql);
    ProgramRun first = erp.start({"process"});
    ProgramRun second = erp.start({"process"});
    const std::array results{first.wait(), second.wait()};
    for (const ProgramResult& result : results) {
      if (result.status == 0) continue;
      ++refused;
      EXPECT_EQ(result.status, 3) << result.messages;
      EXPECT_THAT(result.messages, HasSubstr("the import is locked by user"));
    }
    EXPECT_EQ(std::min(results[0].status, results[1].status), 0) << results[0].messages;
    erp.expectWrittenOnce((round + 1) * jobs);
  }
  EXPECT_GT(refused, 0) << "no two runs have met";
}

TEST_P(SideBySide, OfTwoProgramsThatCreateTheTablesOneDoesAndTheOtherFindsThem) {
  std::set<std::string> outputs;
  for (int round = 0; round < 5; ++round) {
    const std::unique_ptr<TestSchema> empty =
        GetParam() == Kept::OnTheServer ? std::make_unique<TestSchema>() : nullptr;
    const std::string way = empty ? "odbc:" + empty->connectionString()
                                  : (erp.folder.path() / ("new" + std::to_string(round) + ".db")).string();
    ProgramRun first = erp.start({"init", "--demo"}, {}, way);
    ProgramRun second = erp.start({"init", "--demo"}, {}, way);
    for (const ProgramResult& result : {first.wait(), second.wait()}) {
      EXPECT_EQ(result.status, 0) << result.messages;
      outputs.insert(result.output);
    }
    EXPECT_THAT(erp.run({"list", "--limit", "1"}, {}, way).output, HasSubstr("DE00000"));
    EXPECT_EQ(erp.run({"init"}, {}, way).status, 0);
  }
  EXPECT_EQ(outputs.size(), 2U) << "one each time has created it";
}

TEST_P(SideBySide, OfTwoProgramsThatStageTheSameContentInTheSameMomentOneIsTold) {
  const auto file = [](int round, const char* key) {
    std::string jobs;
    for (int i = 0; i < 300; ++i)
      jobs += R"({"type":"Auftrag","JobID":")" + (key + std::to_string(round) + "-" + std::to_string(i)) +
              R"(","Kundennummer":"1","Betreff":")" + std::to_string(round * 1000 + i) +
              R"(","Positionen":[{"Artikelnummer":"A","Menge":1}]})" + "\n";
    return jobs;
  };
  for (int round = 0; round < 3; ++round) {
    ProgramRun first = erp.start({"stage", "-", "--unique", "--json"}, file(round, "A"));
    ProgramRun second = erp.start({"stage", "-", "--unique", "--json"}, file(round, "B"));
    const std::array results{first.wait(), second.wait()};
    EXPECT_EQ(results[0].status + results[1].status, 2) << results[0].output << results[1].output;
    const ProgramResult& refused = results[0].status == 0 ? results[1] : results[0];
    EXPECT_EQ(refused.json()["faults"].size(), 100U);
    EXPECT_EQ(refused.json()["faults"][0]["code"], "content.repeated");
  }
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 900);
  EXPECT_EQ(erp.count("Select Count(*) From Vorgangsinhalte"_sql), 900);
}

TEST_P(SideBySide, ARepeatedContentIsToldAndADoneJobWithItsNumberAndTime) {
  const auto jobs = [](const char* first, const char* second, const char* subject) {
    const auto job = [&](const char* key) {
      return R"({"type":"Auftrag","JobID":")" + std::string(key) + R"(","Kundennummer":"1","Betreff":")" +
             subject + R"(","Positionen":[{"Artikelnummer":"Ä","Menge":1.5}]})" + "\n";
    };
    return job(first) + job(second);
  };
  EXPECT_EQ(erp.run({"stage", "-"}, jobs("A", "B", "x")).output,
            "added     A  Auftrag\nadded     B  Auftrag\n2 staged, 0 skipped, 1 repeated\n");
  erp.execute("Update Vorgangsinhalte Set Zeitpunkt = '20261123180400'"_sql);
  erp.execute("Update ImportKopf Set JobType = 33, Bemerkung = ' Auftrag: 200001' Where JobID = 'A'"_sql);
  erp.execute("Insert Into Zustandswechsel (Folge, JobID, JobType, Zeitpunkt) Values (1, 'A', 33, "
              "'20261123190000')"_sql);
  EXPECT_EQ(
      erp.run({"stage", "-", "--json"}, jobs("a", "C", "x") + jobs("D", "b", "y")).output,
      R"({"staged":3,"skipped":1,"jobs":["C","D","b"],"skippedJobs":[{"JobID":"a","state":"done",)"
      R"("kind":"auftrag","number":"200001","doneSince":"2026-11-23T19:00:00+01:00","changed":false}],)"
      R"("repeatedJobs":[{"JobID":"C","sameContentAs":{"JobID":"A","since":"2026-11-23T18:04:00+01:00"}},)"
      R"({"JobID":"b","sameContentAs":{"JobID":"D","since":null}}]})"
      "\n");
  EXPECT_EQ(
      erp.run({"stage", "-"}, jobs("A", "E", "z")).output,
      "skipped   A  Auftrag 200001  (done since 23.11.2026 19:00:00, with another content; --again stages it "
      "anew)\nadded     E  Auftrag\n1 staged, 1 skipped\n");
  EXPECT_EQ(erp.run({"stage", "-", "--unique"}, jobs("F", "E", "z")).status, 2);
  EXPECT_EQ(erp.run({"stage", "-", "--unique", "--partial", "--json"}, jobs("F", "E", "z")).json()["jobs"],
            Json{"E"});
}

TEST_P(SideBySide, NumbersAreDrawnOnceAndWithoutGapsBesideAnotherProgram) {
  std::string jobs = R"({"type":"Kunde","JobID":"K","Kundennummer":"91001","Bez1":"Firma","Land":"DE"})";
  constexpr int orders = 60;
  for (int i = 0; i < orders; ++i) {
    // Every third one fails behind the drawing of its number.
    const std::string article = i % 3 == 2 ? "no such" : "FEI-013";
    jobs +=
        "\n{\"type\":\"Auftrag\",\"JobID\":\"A" + std::to_string(i) +
        R"(","Kundennummer":"91001","Bez1":"Firma","Eingangsdatum":"1.2.26","Positionen":[{"ChildID":"P)" +
        std::to_string(i) + R"(","Positionsnummer":1,"Artikelnummer":")" + article +
        R"(","Menge":1,"Mengeneinheit":"ST"}]})";
  }
  ASSERT_EQ(erp.run({"stage", "-"}, jobs).status, 0);
  const auto before =
      erp.count("Select aktuellerWert From Nummernkreise Where NSchl = 'AB' And Buchungskreis = 1"_sql);
  const auto other = erp.another();
  std::vector<std::int64_t> drawn;
  ProgramRun run = erp.start({"process"});
  std::optional<ProgramResult> result;
  while (!result) {
    {
      WorkUnit unit(*other);
      drawn.push_back(erp::NumberRanges().draw(*other, "AB", 1).value_or(-1));
      unit.commit();
    }
    result = run.waitAtMost(std::chrono::seconds(0));
    // Who would write without a pause kept everybody from a file.
    if (GetParam() == Kept::InAFile) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  EXPECT_EQ(result->status, 1) << result->messages;
  EXPECT_GT(drawn.size(), 1U);
  const auto written = erp.rows("Select Auftragsnummer From Auftragskopf"_sql);
  EXPECT_EQ(written.size(), 2U * orders / 3U) << result->output;
  for (const auto& row : written) drawn.push_back(row.front().integer().value_or(-1));
  std::sort(drawn.begin(), drawn.end());
  std::vector<std::int64_t> expected(drawn.size());
  std::iota(expected.begin(), expected.end(), before + 1);
  EXPECT_EQ(drawn, expected);
}

TEST_P(SideBySide, ANumberInUseIsToldWithItsCircleAndTheNextOrderGetsTheNextOne) {
  erp.execute("Insert Into Auftragskopf (Auftragsnummer) Select aktuellerWert + 1 From Nummernkreise Where "
              "NSchl = 'AB' And Buchungskreis = 1"_sql);
  const std::string order = R"("Kundennummer":"91001","Bez1":"Firma","Eingangsdatum":"1.2.26","Positionen":[
    {"Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1,"Mengeneinheit":"ST"}]})";
  ASSERT_EQ(erp.run({"stage", "-"}, R"({"type":"Kunde","JobID":"K","Kundennummer":"91001","Bez1":"Firma"}
    {"type":"Auftrag","JobID":"A1",)" + order +
                                        R"({"type":"Auftrag","JobID":"A2",)" + order)
                .status,
            0);
  EXPECT_EQ(erp.run({"process"}).status, 1);
  EXPECT_EQ(erp.text("Select Fehlertext From ImportKopf Where JobID = 'A1'"_sql),
            "Die Auftragsnummer: '200001' im Buchungskreis '1' ist bereits vergeben. Bitte prüfen Sie den "
            "Nummernkreis der Aufträge.");
  EXPECT_EQ(erp.count("Select JobType From ImportKopf Where JobID = 'A2'"_sql), 33);
  EXPECT_EQ(erp.keys("Select Auftragsnummer From Auftragskopf Order By Auftragsnummer"_sql),
            "200001 200002 ");
}

TEST(ServerSideBySide, ALockThatAnotherProgramTakesOverInTheSameMomentIsLeftToIt) {
  SharedErp erp(Kept::OnTheServer);
  erp.stageCustomers("K", 1);
  const FixedProcesses ended;
  const erp::ProcessIdentity dead(thisMachine(), ended);
  erp.execute(
      "Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values ('ImportJob', "
      "'1', 'unbennant', '"_sql,
      value(dead.sessionId()), "', 'tot')"_sql);
  auto unit = std::make_unique<WorkUnit>(erp.connection());
  erp.execute("Update LockControl Set SessionID = 'andere', Benutzer = 'erika'"_sql);
  // It has seen the lock of the dead program.
  ProgramRun run = erp.start({"process"});
  erp.awaitWaiting();
  unit->commit();
  const ProgramResult result = run.wait();
  EXPECT_EQ(result.status, 3) << result.output;
  EXPECT_THAT(result.messages, HasSubstr("the import is locked by user 'erika'"));
  EXPECT_EQ(erp.keys("Select Benutzer From LockControl"_sql), "erika ");
  EXPECT_EQ(erp.lines(), 0);
}

TEST(ServerSideBySide, AContentThatAnotherProgramIsAboutToStageIsAwaited) {
  SharedErp erp(Kept::OnTheServer);
  erp.stageCustomers("K", 1);
  const auto file = [](const char* key) {
    return R"({"type":"Kunde","JobID":")" + std::string(key) + R"(","Kundennummer":"1","Bez1":"Firma"})";
  };
  auto unit = std::make_unique<WorkUnit>(erp.connection());
  erp.execute("Update ImportKopf Set Info = 'x' Where JobID = 'K0'"_sql);
  ProgramRun first = erp.start({"stage", "-", "--unique"},
                               R"({"type":"Kunde","JobID":"K0","Kundennummer":"K0","Bez1":"N"})" + file("A"));
  erp.awaitWaiting();
  ProgramRun second = erp.start({"stage", "-", "--unique"}, file("B"));
  ASSERT_FALSE(second.waitAtMost(std::chrono::seconds(2)));
  unit.reset();
  EXPECT_EQ(first.wait().status, 0);
  const ProgramResult result = second.wait();
  EXPECT_EQ(result.status, 2) << result.output;
  EXPECT_THAT(result.messages, HasSubstr("the content is that of the job 'A' of "));
}

TEST(ServerSideBySide, OthersReadAndPrepareJobsWhileARunIsUnderWay) {
  SharedErp erp(Kept::OnTheServer);
  const std::string file = (erp.folder.path() / "jobs.txt").string();
  erp.stageCustomers("I", 1);
  ASSERT_EQ(erp.run({"export", file}).status, 0);
  ASSERT_EQ(erp.run({"delete", "I0"}).status, 0);
  erp.stageCustomers("K", 5);
  ASSERT_EQ(erp.run({"stage", "-"},
                    R"({"type":"Kunde","Bez1":"N","JobID":"W","Kundennummer":"W","Versandart":"DROHNE"}
                                       {"type":"Kunde","Bez1":"N","JobID":"fort","Kundennummer":"F"})")
                .status,
            0);
  // The run does not touch them.
  erp.execute("Update ImportKopf Set JobType = 11 Where JobID In ('W', 'fort')"_sql);
  // Of the run all but its last job is done when it meets this row.
  auto holding = std::make_unique<WorkUnit>(erp.connection());
  erp.execute("Update ImportKopf Set Bez1 = 'Firma' Where JobID = 'K4'"_sql);
  ProgramRun run = erp.start({"process", "--json"});
  erp.awaitWaiting();

  struct Command {
    std::vector<std::string> arguments;
    int status;
    std::string_view output;
  };
  for (const Command& command :
       {Command{{"list"}, 0, "K4"}, Command{{"show", "K4"}, 0, "Firma"}, Command{{"check", "W"}, 1, "DROHNE"},
        Command{{"stage", "-"}, 0, "1 staged"}, Command{{"release", "W"}, 0, "released  W"},
        Command{{"delete", "fort"}, 0, ""}, Command{{"process"}, 3, ""},
        Command{{"process", "--wait=0"}, 3, ""}, Command{{"import", file}, 0, "1 jobs"}}) {
    const ProgramResult result =
        erp.run(command.arguments, R"({"type":"Kunde","JobID":"neu","Kundennummer":"N","Bez1":"Firma"})");
    EXPECT_EQ(result.status, command.status) << command.arguments.front() << ": " << result.messages;
    EXPECT_THAT(result.output, HasSubstr(command.output));
  }
  ProgramRun waiting = erp.start({"process", "--wait"});
  EXPECT_FALSE(run.waitAtMost(std::chrono::seconds(0))) << "the run was to wait all the time";
  holding->commit();
  holding.reset();
  EXPECT_EQ(run.wait().status, 0);
  EXPECT_EQ(waiting.wait().status, 0);
  EXPECT_EQ(erp.keys("Select JobType From ImportKopf Where JobID In ('K4', 'neu', 'W', 'I0')"_sql),
            "13 13 13 13 ");
}

} // namespace
} // namespace qx
