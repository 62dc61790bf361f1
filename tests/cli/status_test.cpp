// The state of an installation, and the book of its runs.
#include "program_fixture.h"

#include <csignal>
#include <regex>
#include <sstream>

namespace qx {
namespace {

using Status = ProgramTest;

TEST_F(Status, TellsJobsRunsLockAndDatabase) {
  mustStage(R"([{"type":"Kunde","JobID":"gut","Kundennummer":"K1","Bez1":"Firma"},
                {"type":"Kunde","Bez1":"N","JobID":"falsch","Kundennummer":"-"}])");
  takeNumber("falsch");
  ASSERT_EQ(run({"--user", "meier", "process"}).status, 1);
  mustStage(
      R"([{"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"unlesbar"},{"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"neu","Eingangsdatum":"2.11.2026"},
                {"type":"Vertrag","JobID":"alt","JobType":40,"Eingangsdatum":"30.10.2026"}])");
  erp.execute("Update ImportKopf Set Eingangsdatum = 'bald' Where JobID = 'unlesbar'"_sql);
  Json status = run({"status", "--json"}).json();
  EXPECT_EQ(status["jobs"], Json::parse(R"({
      "kunde":{"waiting":0,"warning":0,"error":1,"done":1,"deleted":0},
      "kundenvertrag":{"waiting":1,"warning":0,"error":0,"done":0,"deleted":0},
      "vertrag":{"waiting":0,"warning":0,"error":0,"done":0,"deleted":0},
      "auftrag":{"waiting":2,"warning":0,"error":0,"done":0,"deleted":0}})"));
  EXPECT_EQ(status["oldest"], Json::parse(R"({"JobID":"alt","Eingangsdatum":"30.10.2026"})"));
  ASSERT_EQ(status["runs"].size(), 1U);
  Json& entry = status["runs"][0];
  EXPECT_LE(entry["begin"], entry["end"]);
  EXPECT_EQ(entry["protocol"], erp.text("Select ID From Protokolle"_sql));
  const std::string version = run({"--version"}).output;
  EXPECT_EQ(entry["program"], version.substr(0, version.find(" (")));
  for (const char* varying : {"begin", "end", "protocol", "program"}) entry.erase(varying);
  EXPECT_EQ(entry,
            Json::parse(R"({"outcome":"completed","processed":2,"done":1,"warning":0,"error":1,"waiting":0,
                                   "user":"meier"})"));
  EXPECT_EQ(status["lock"], Json::parse(R"({"held":false,"Benutzer":"","alive":null})"));
  EXPECT_EQ(status["schema"], erp.text("Select Version From Schemastand"_sql));
  EXPECT_GT(status["bytes"], 100000);
  EXPECT_GT(status["bytesFree"], 0);
  EXPECT_EQ(status["protocols"], 1);
  EXPECT_EQ(status["protocolLines"], 2);
  const std::string text = run({"status"}).output;
  EXPECT_NE(text.find("Oldest     30.10.2026, waiting: alt\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Auftrag        2          0          0          0          0\n"), std::string::npos)
      << text;
}

TEST_F(Status, IsOfferedAsMetrics) {
  erp.execute("Insert Into Importlaeufe (LaufID, Beginn, Ende, Ausgang, Erledigt) Values "
              "('a', '20261124060000', '20261124060130', 'completed', 7)"_sql);
  variables["TZ"] = "UTC";
  const ProgramResult result = run({"status", "--prometheus"});
  EXPECT_EQ(result.status, 0);
  std::istringstream lines(result.output);
  for (std::string line; std::getline(lines, line);)
    EXPECT_TRUE(std::regex_match(
        line, std::regex(R"((# (HELP|TYPE) )?qximportjob_[a-z_]+( .+|(\{([a-z]+="[a-z]+",?)+\})? -?\d+))")))
        << line;
  // 24.11.2026 06:00:00
  for (const char* sample :
       {"qximportjob_last_run_begin_timestamp_seconds 1795500000\n",
        "qximportjob_last_run_end_timestamp_seconds 1795500090\n", "qximportjob_last_run_completed 1\n",
        "qximportjob_last_run_jobs{result=\"done\"} 7\n",
        "qximportjob_jobs{kind=\"auftrag\",state=\"error\"} 0\n", "qximportjob_lock_held 0\n"})
    EXPECT_NE(result.output.find(sample), std::string::npos) << sample << result.output;
  EXPECT_EQ(run({"status", "--prometheus", "--json"}).status, 2);
}

TEST_F(Status, ShowsARunThatWasKilledAsNotEnded) {
  std::string jobs;
  for (int i = 0; i < 3000; ++i)
    jobs += R"({"type":"Kunde","Bez1":"N","Kundennummer":"K)" + std::to_string(i) + "\"}\n";
  mustStage(jobs);
  ProgramRun killed(erp.folder, onDatabase({"process"}), variables, {});
  ASSERT_TRUE(killed.waitForOutput());
  killed.signal(SIGKILL);
  killed.wait();
  ProgramRun stopped(erp.folder, onDatabase({"process"}), variables, {});
  ASSERT_TRUE(stopped.waitForOutput());
  stopped.signal(SIGTERM);
  EXPECT_EQ(stopped.wait().status, 5);
  const Json runs = run({"status", "--json"}).json()["runs"];
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_EQ(runs[0]["outcome"], "stopped");
  EXPECT_EQ(runs[0]["waiting"], static_cast<int>(listed({"--state", "waiting"}).size()));
  EXPECT_TRUE(runs[1]["outcome"].is_null());
  EXPECT_EQ(run({"status", "--runs", "1", "--json"}).json()["runs"].size(), 1U);
}

TEST_F(Status, SaysThatADatabaseOfAHostKeepsNoBook) {
  mustStage(R"({"type":"Kunde","Kundennummer":"K1","Bez1":"Firma"})");
  erp.execute("Drop Table Importlaeufe"_sql);
  EXPECT_EQ(run({"process"}).status, 0);
  EXPECT_TRUE(run({"status", "--json"}).json()["runs"].is_null());
  EXPECT_NE(run({"status"}).output.find("keeps no book"), std::string::npos);
}

TEST_F(Status, ProtocolsAndRunsOfEarlierDaysCanBeDeleted) {
  mustStage(R"({"type":"Kunde","Kundennummer":"K1","Bez1":"Firma"})");
  ASSERT_EQ(runPlain({"--db", erp.file, "--date", "2026-11-23", "process"}).status, 0);
  mustStage(R"({"type":"Kunde","Kundennummer":"K2","Bez1":"Firma"})");
  ASSERT_EQ(run({"process"}).status, 0);
  erp.execute("Insert Into Importlaeufe (LaufID, Beginn) Values ('a', '20251231235959')"_sql);
  EXPECT_EQ(run({"protocol", "purge", "--before", "24.11.2026", "--json"}).json()["protocols"], 1);
  EXPECT_EQ(erp.count("Select Count(*) From Protokollpositionen"_sql), 1);
  EXPECT_EQ(erp.text("Select Text1 From Protokollpositionen"_sql), "K2");
  EXPECT_EQ(erp.count("Select Count(*) From Importlaeufe Where LaufID = 'a'"_sql), 0);
  for (const char* wrong : {"gestern", "2026-11-31", "2026-1-1", "26-11-2026"})
    EXPECT_EQ(run({"protocol", "purge", "--before", wrong}).status, 2) << wrong;
  EXPECT_EQ(run({"protocol", "purge"}).status, 2);
}

} // namespace
} // namespace qx
