// The feed of results: what a shop polls.
#include "program_fixture.h"

#include <gmock/gmock.h>

#include <csignal>
#include <set>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Results : public ProgramTest {
protected:
  Results() {
    variables["TZ"] = "Europe/Berlin";
    // The program has another clock than the test.
    erp.setOption("AutomatischVerarbeiten", "1");
  }

  Json results(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"results", "--json"});
    const ProgramResult result = run(options);
    EXPECT_EQ(result.status, 0) << result.messages;
    return result.json();
  }
  /// "key state" of each entry.
  static std::vector<std::string> brief(const Json& answer) {
    std::vector<std::string> entries;
    for (const Json& entry : answer["results"])
      entries.push_back(entry["JobID"].get<std::string>() + ' ' + entry["state"].get<std::string>());
    return entries;
  }
  std::string customers(int count) const {
    std::string jobs;
    for (int i = 0; i < count; ++i)
      jobs += R"({"type":"Kunde","Bez1":"N","JobID":"K)" + std::to_string(i) + R"(","Kundennummer":"K)" +
              std::to_string(i) + "\"}\n";
    return jobs;
  }
  /// The text of a moment in the middle of that hour.
  void setMoment(std::int64_t from, std::int64_t to, std::string_view stamp) {
    erp.execute("Update Zustandswechsel Set Zeitpunkt = '"_sql, value(stamp), "' Where Folge >= "_sql,
                number(from), " And Folge <= "_sql, number(to));
  }
};

TEST_F(Results, TellEachChangeOnceWithTheMembersThatAShopNeeds) {
  EXPECT_EQ(results().dump(), R"({"results":[],"cursor":"start","more":false})");
  mustStage(R"([{"type":"Kunde","JobID":"gut","Kundennummer":"K1","Bez1":"Firma"},
                {"type":"Kunde","JobID":"schlecht","Kundennummer":"K2","Bez1":"F","Kundengruppe":"keine"}])");
  EXPECT_EQ(results()["results"].size(), 0U) << "arrival is no change";
  ASSERT_EQ(run({"process"}).status, 1);
  setMoment(1, 1, "20260724103000");
  setMoment(2, 2, "20261124235959");
  const Json first = results({"--after", "start"});
  ASSERT_EQ(first["results"].size(), 2U);
  Json entry = first["results"][0];
  EXPECT_THAT(entry["cursor"], ::testing::MatchesRegex("[0-9a-f]{8}-1-[0-9a-f]{8}"));
  entry.erase("cursor");
  EXPECT_EQ(entry.dump(), R"({"time":"2026-07-24T10:30:00+02:00","JobID":"gut","JobType":13,"state":"done",)"
                          R"("kind":"kunde","number":"K1","Fehlertext":"","reasons":[]})");
  entry = first["results"][1];
  EXPECT_EQ(entry["cursor"], first["cursor"]);
  entry.erase("cursor");
  EXPECT_EQ(
      entry.dump(),
      R"({"time":"2026-11-24T23:59:59+01:00","JobID":"schlecht","JobType":11,"state":"warning",)"
      R"("kind":"kunde","number":null,"Fehlertext":"Beim Verarbeiten wurden Warnungen festgestellt.\r\n)"
      R"(Kundengruppe: 'keine' ist nicht angelegt.\r\n","reasons":[{"code":"customer.group.unknown",)"
      R"("text":"Kundengruppe: 'keine' ist nicht angelegt."}]})");
  const std::string cursor = first["cursor"];
  EXPECT_EQ(results({"--after", cursor}).dump(),
            R"({"results":[],"cursor":")" + cursor + R"(","more":false})");

  // A parked job is staged anew, one is staged again, deleted, and kept and brought back.
  mustStage(R"({"type":"Kunde","JobID":"SCHLECHT","Kundennummer":"K2","Bez1":"F"})");
  mustStage(R"({"type":"Kunde","JobID":"SCHLECHT","Kundennummer":"K2","Bez1":"G"})");
  mustStage(R"({"type":"Kunde","JobID":"gut","Kundennummer":"K1","Bez1":"Firma"})");
  const std::string kept = (erp.folder.path() / "fort.json").string();
  ASSERT_EQ(run({"delete", "gut", "--keep", kept}).status, 0);
  ASSERT_EQ(run({"stage", kept}).status, 0);
  mustStage(R"({"type":"Kunde","JobID":"gut","Kundennummer":"K1","Bez1":"Firma"})", {"--again"});
  const Json later = results({"--after", cursor});
  EXPECT_THAT(brief(later), ElementsAre("SCHLECHT waiting", "gut deleted", "gut done", "gut waiting"));
  EXPECT_EQ(later["results"][2]["number"], "K1");
  ASSERT_EQ(run({"process"}).status, 0);
  ASSERT_EQ(run({"purge"}).status, 0);
  EXPECT_THAT(brief(results({"--after", later["cursor"]})), ElementsAre("gut done", "SCHLECHT done"))
      << "clearing away done jobs is no change";
  const std::string text = run({"results", "--limit", "2"}).output;
  EXPECT_THAT(text, HasSubstr("2026-07-24T10:30:00+02:00  Kunde          K1          erledigt  gut"));
  EXPECT_THAT(text, HasSubstr("schlecht                          Kundengruppe: 'keine' ist nicht angelegt."));
  EXPECT_THAT(text, HasSubstr("\nThere is more. Go on with: --after " + cursor + "\n"));
}

TEST_F(Results, GoOnBehindTheLastLineThatWasHandled) {
  mustStage(customers(40));
  ASSERT_EQ(run({"process"}).status, 0);
  std::vector<std::string> seen;
  std::string cursor = "start";
  for (int answers = 0;; ++answers) {
    ASSERT_LT(answers, 20);
    const ProgramResult result = run({"results", "--after", cursor, "--limit", "7", "--json=lines"});
    ASSERT_EQ(result.status, 0) << result.messages;
    std::istringstream lines(result.output);
    Json last;
    // Every other time the shop dies behind the third line.
    int handled = 0;
    for (std::string line; std::getline(lines, line) && (answers % 2 == 0 || handled < 3); ++handled) {
      last = Json::parse(line);
      cursor = last["cursor"];
      if (last.contains("JobID")) seen.push_back(last["JobID"]);
    }
    if (last.contains("more") && !last["more"].get<bool>()) break;
  }
  EXPECT_EQ(seen.size(), 40U);
  EXPECT_EQ(std::set<std::string>(seen.begin(), seen.end()).size(), 40U);
  EXPECT_EQ(seen.front(), "K0");
  // The last line says so, also when there is nothing new.
  EXPECT_EQ(run({"results", "--after", cursor, "--json=lines"}).output,
            R"({"cursor":")" + cursor + "\",\"more\":false}\n");
}

TEST_F(Results, BeginAtAMomentWhateverItsFormAndZone) {
  mustStage(customers(4));
  ASSERT_EQ(run({"process"}).status, 0);
  setMoment(1, 1, "20261123235959");
  setMoment(2, 2, "20261124103000");
  setMoment(3, 3, "20261124103001");
  // The clock of another program is behind; what is told stays in its order.
  setMoment(4, 4, "20261124100000");
  for (const auto& [since, first] :
       std::vector<std::pair<std::string, std::size_t>>{{"24.11.2026", 2},
                                                        {"2026-11-24", 2},
                                                        {"24.11.2026 10:30", 2},
                                                        {"2026-11-24T10:30:01", 3},
                                                        {"2026-11-24T10:30:01+01:00", 3},
                                                        {"2026-11-24T09:30:01Z", 3},
                                                        {"2026-11-24T04:00:01-05:30", 3},
                                                        {"2026-11-24 09:30:00.250Z", 2},
                                                        {"1.1.2026", 1}})
    EXPECT_EQ(results({"--since", since})["results"].size(), 5 - first) << since;
  const Json nothing = results({"--since", "25.11.2026"});
  EXPECT_EQ(nothing["results"].size(), 0U);
  EXPECT_EQ(nothing["cursor"], results()["cursor"]) << "what comes next is not missed";
  for (const char* wrong : {"gestern", "2026-11-31", "24.11.2026 25:00", "2026-11-24T10", ""})
    EXPECT_EQ(run({"results", "--since", wrong}).status, 2) << wrong;
}

TEST_F(Results, RefuseACursorThatDoesNotFitAndSayWhatToDo) {
  const auto refused = [&](const std::string& cursor) {
    const ProgramResult result = run({"results", "--after", cursor});
    EXPECT_EQ(result.status, 2) << cursor << result.output;
    EXPECT_THAT(result.messages, HasSubstr("results --since TIME")) << cursor;
    return result.messages;
  };
  mustStage(customers(3));
  ASSERT_EQ(run({"process"}).status, 0);
  const Json all = results();
  const std::string last = all["cursor"];
  const std::string identity = last.substr(0, 8);
  const std::string middle = all["results"][1]["cursor"];
  EXPECT_EQ(brief(results({"--after", middle})).size(), 1U);
  for (const std::string& damaged :
       {std::string("x"), std::string(), identity, identity + "-3", last.substr(0, 17), last + "0",
        identity + "--1-00000000", identity + "-99999999999999999999-00000000", "Start" + last})
    EXPECT_THAT(refused(damaged), HasSubstr("is no cursor"));
  EXPECT_THAT(refused("00000000" + last.substr(8)), HasSubstr("another database"));
  EXPECT_THAT(refused(identity + "-3-" + middle.substr(middle.size() - 8)), HasSubstr("earlier state"));
  EXPECT_EQ(run({"results", "--after", last, "--since", "24.11.2026"}).status, 2);
  EXPECT_EQ(run({"results", "--limit", "-1"}).status, 2);

  // A copy from before is restored, and goes its own way until it has given out the same number.
  const std::string backup = (erp.folder.path() / "früher.db").string();
  ASSERT_EQ(run({"backup", backup}).status, 0);
  ASSERT_EQ(run({"delete", "K0"}).status, 0);
  const std::string ahead = results()["cursor"];
  const auto onBackup = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--db", backup});
    return runPlain(arguments);
  };
  EXPECT_THAT(onBackup({"results", "--after", ahead}).messages, HasSubstr("earlier state"));
  EXPECT_EQ(onBackup({"results", "--after", last}).status, 0);
  ASSERT_EQ(onBackup({"delete", "K1"}).status, 0);
  EXPECT_THAT(onBackup({"results", "--after", ahead}).messages, HasSubstr("earlier state"));

  // The days before the last change are purged.
  setMoment(1, 2, "20261120120000");
  setMoment(3, 4, "20261121120000");
  EXPECT_THAT(run({"protocol", "purge", "--before", "21.11.2026"}).output,
              HasSubstr("and 2 changes of states deleted, "));
  EXPECT_THAT(refused(all["results"][0]["cursor"]), HasSubstr("have been deleted"));
  EXPECT_THAT(refused("start"), HasSubstr("have been deleted"));
  EXPECT_EQ(brief(results({"--after", middle})).size(), 2U) << "nothing behind this one is missing";
  EXPECT_EQ(run({"protocol", "purge", "--before", "22.11.2026", "--json"}).json()["changes"], 2);
  EXPECT_EQ(brief(results()).size(), 0U);
  ASSERT_EQ(run({"delete", "K1"}).status, 0);
  EXPECT_EQ(erp.count("Select Folge From Zustandswechsel"_sql), 5) << "numbers never go back";
}

TEST_F(Results, OfAKilledRunAreThoseOfItsDurableJobs) {
  mustStage(customers(3000));
  ProgramRun killed(erp.folder, onDatabase({"process"}), variables, {});
  ASSERT_TRUE(killed.waitForOutput());
  killed.signal(SIGKILL);
  killed.wait();
  EXPECT_GT(erp.count("Select Count(*) From ImportKopf Where JobType = 10"_sql), 0);
  ASSERT_EQ(run({"process"}).status, 0);
  EXPECT_EQ(erp.count("Select Count(*) From Zustandswechsel"_sql), 3000);
  EXPECT_EQ(erp.count("Select Count(Distinct JobID) From Zustandswechsel Where JobType = 13"_sql), 3000);
  EXPECT_EQ(erp.count("Select Max(Folge) From Zustandswechsel"_sql), 3000);
}

TEST_F(Results, AreNotKeptByADatabaseOfAHost) {
  erp.execute("Drop Table Zaehlerstaende"_sql);
  mustStage(customers(1));
  EXPECT_EQ(run({"process"}).status, 0);
  EXPECT_EQ(run({"delete", "K0"}).status, 0);
  const ProgramResult result = run({"results"});
  EXPECT_EQ(result.status, 4);
  EXPECT_THAT(result.messages, HasSubstr("keeps no changes"));
}

} // namespace
} // namespace qx
