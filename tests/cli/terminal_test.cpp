// What the program prints at a terminal.
#include "program_fixture.h"
#include "terminal_run.h"

#include <chrono>
#include <string>

namespace qx {
namespace {

class Terminal : public ProgramTest {
protected:
  TerminalResult atTerminal(std::vector<std::string> arguments, std::size_t columns = 80) {
    return runAtTerminal(onDatabase(std::move(arguments)), variables, columns);
  }
  std::string customersFile(int count) const {
    std::string jobs;
    for (int i = 0; i < count; ++i)
      jobs += R"({"type":"Kunde","JobID":"DE)" + std::to_string(1000000 + i) +
              R"(00000000000000000000000",)" + R"("Kundennummer":"K)" + std::to_string(1000000 + i) +
              R"(","Bez1":"Firma"})" + "\n";
    erp.folder.write("jobs.json", jobs);
    return (erp.folder.path() / "jobs.json").string();
  }
};

/// Lines that hold a piece of a bar.
std::size_t barsLeft(const Screen& screen) {
  std::size_t count = 0;
  for (const std::string& line : screen.lines())
    if (line.find(" % ") != std::string::npos || line.find("/s  ") != std::string::npos) ++count;
  return count;
}

TEST_F(Terminal, AMovingBarLeavesNoTraceAndNeverRunsIntoTheNextLine) {
  constexpr int jobs = 3000;
  const std::string file = customersFile(jobs);
  const std::string target = (erp.folder.path() / "jobs.edi").string();
  for (const std::vector<std::string>& command : {std::vector<std::string>{"stage", file},
                                                  {"export", target},
                                                  {"import", target},
                                                  {"process"},
                                                  {"purge"}}) {
    const auto begin = std::chrono::steady_clock::now();
    const TerminalResult result = atTerminal(command);
    const std::chrono::duration<double> span = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(result.status, 0) << command.front();
    EXPECT_EQ(result.screen.wraps(), 0) << command.front();
    EXPECT_EQ(barsLeft(result.screen), 0U) << command.front();
    EXPECT_LE(result.screen.bars(), 2 + 10 * span.count()) << command.front();
    if (command.front() == "stage") {
      EXPECT_NE(result.bytes.find("  copying rows"), std::string::npos);
    }
    if (command.front() == "process") {
      EXPECT_GE(result.screen.bars(), 2);
      EXPECT_NE(result.bytes.find(" of 3000  "), std::string::npos);
      EXPECT_NE(result.bytes.find(" left"), std::string::npos);
      // Each job, the summary and the line with the cursor.
      EXPECT_EQ(result.screen.lines().size(), jobs + 2U);
    }
  }
}

TEST_F(Terminal, TextsOfJobsNeverReachItAsControlCharacters) {
  mustStage(R"({"type":"Kunde","JobID":"E\u001b[2J","Kundennummer":"7\u001b[31m","Kundengruppe":"\u009b2JX",
                "Bez1":"a\u202eb","Betreff":"\u0007"})");
  for (const std::vector<std::string>& command : {std::vector<std::string>{"list"},
                                                  {"check"},
                                                  {"show", "E\033[2J"},
                                                  {"explain", "E\033[2J"},
                                                  {"show", "nicht\033[2J"},
                                                  {"list", "--kind", "\033[2J"},
                                                  {"list", "--\033[2J"},
                                                  {"process"},
                                                  {"protocol"},
                                                  {"list", "--json"},
                                                  {"delete", "E\033[2J"}}) {
    const TerminalResult result = atTerminal(command);
    for (const auto& [sequence, count] : result.screen.sequences())
      EXPECT_TRUE(sequence == "[K" || sequence == "[0m" || sequence == "[31m" || sequence == "[32m" ||
                  sequence == "[33m")
          << command.front() << ": " << sequence;
    for (const char* control : {"\u009b", "\u202e", "\a", "7\033"})
      EXPECT_EQ(result.bytes.find(control), std::string::npos) << command.front();
  }
}

TEST_F(Terminal, TablesFitItsWidth) {
  mustStage(R"([{"type":"Kunde","JobID":"DE000000000000000000000000000001","Kundennummer":"70001",
                 "Bez1":"\u6771\u4EAC\u5546\u4F1A\u6771\u4EAC\u5546\u4F1A\u6771\u4EAC\u5546\u4F1A",
                 "Betreff":"Eine lange Bemerkung zu diesem Vorgang, die nicht in die Zeile passt","Eingangsdatum":"24.11.2026"}])");
  EXPECT_EQ(atTerminal({"list", "--color", "never"}).screen.lines()[1],
            "wartet    Kunde    70001   DE000000000000000000000000000001  Eine lange Bemerku…");
  EXPECT_EQ(atTerminal({"list", "--color", "never"}, 120).screen.lines()[1],
            "wartet    Kunde         24.11.2026  70001   DE000000000000000000000000000001  東京商会東京商…   "
            "Eine lange Bemerkung zu…");
}

TEST_F(Terminal, ALongKeyGivesWayToTheCauseOfAFailure) {
  mustStage(R"([{"type":"Kunde","Kundennummer":"-","JobID":"DE000000000000000000000000000001","Bez1":"Firma"},
                {"type":"Kunde","Bez1":"N","JobID":"\u6771\u4EAC\u5546\u4F1A\u6771\u4EAC\u5546\u4F1A",
                 "Kundennummer":"9","Kundengruppe":"XX"}])");
  takeNumber("DE000000000000000000000000000001");
  const auto lines = atTerminal({"process", "--color", "never"}).screen.lines();
  EXPECT_EQ(lines[0], "Fehler    Kunden           DE0000…000001  Die Kundennummer fehlt.");
  EXPECT_EQ(lines[1], "Fehler    Kunden   9       東京商…京商会  Die Kundengruppe: 'XX' wurde noch nic…");
}

TEST_F(Terminal, StatesAreColouredThereUnlessItIsNotWanted) {
  mustStage(R"({"type":"Kunde","Bez1":"N","JobID":"F","Kundennummer":"-"})");
  takeNumber("F");
  ASSERT_EQ(run({"process"}).status, 1);
  const std::string red = "\033[31mFehler\033[0m";
  const auto colored = [&](std::vector<std::string> arguments) {
    return atTerminal(std::move(arguments)).bytes.find(red) != std::string::npos;
  };
  EXPECT_TRUE(colored({"list"}));
  EXPECT_FALSE(colored({"list", "--color", "never"}));
  EXPECT_EQ(run({"list"}).output.find('\033'), std::string::npos);
  EXPECT_NE(run({"list", "--color=always"}).output.find(red), std::string::npos);
  EXPECT_EQ(run({"list", "--color", "blue"}).status, 2);
  variables["NO_COLOR"] = "1";
  EXPECT_FALSE(colored({"list"}));
  EXPECT_TRUE(colored({"list", "--color", "always"}));
}

} // namespace
} // namespace qx
