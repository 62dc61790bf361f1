// What the program says about itself, and how it understands what is typed.
#include "program_fixture.h"

#include "terminal_run.h"

#include <algorithm>
#include <iterator>
#include <regex>
#include <sstream>

namespace qx {
namespace {

using Help = ProgramTest;

TEST_F(Help, EveryCommandHasItsOptionsTheCommonOnesAndTwoExamplesThatCanBeTyped) {
  std::vector<std::string> commands{""};
  std::size_t seen = 0;
  for (std::size_t i = 0; i < commands.size(); ++i) {
    std::vector<std::string> words;
    std::istringstream text(commands[i]);
    for (std::string word; text >> word;) words.push_back(word);
    words.emplace_back("--help");
    const ProgramResult help = runPlain(words);
    ASSERT_EQ(help.status, 0) << commands[i];
    words.pop_back();
    words.insert(words.begin(), "help");
    if (i > 0) {
      EXPECT_EQ(runPlain(words).output, help.output) << commands[i];
    }
    const std::string list =
        help.output.substr(std::min(help.output.find("Subcommands:"), help.output.size()));
    const std::regex verb(R"(\n  ([a-z]+) )");
    for (std::sregex_iterator at(list.begin(), list.end(), verb), end; at != end; ++at)
      commands.push_back(commands[i].empty() ? (*at)[1].str() : commands[i] + " " + (*at)[1].str());
    if (i == 0) continue;
    ++seen;
    for (const char* part :
         {"--db TARGET", "default today", "--color WHEN=auto", "QXIMPORTJOB_DB  ", "Exit status: 0"})
      EXPECT_NE(help.output.find(part), std::string::npos) << commands[i] << part;
    const std::regex example(R"(\n    (.*qximportjob .*))");
    const auto examples =
        std::distance(std::sregex_iterator(help.output.begin(), help.output.end(), example), {});
    EXPECT_EQ(examples, 2) << commands[i] << help.output;
  }
  EXPECT_GT(seen, 25U);
}

TEST_F(Help, ASlipIsNamedWithTheWordThatWasMeant) {
  const auto messages = [&](std::vector<std::string> words) {
    const ProgramResult result = run(std::move(words));
    EXPECT_EQ(result.status, 2);
    return result.messages;
  };
  EXPECT_EQ(messages({"lsit"}), "qximportjob: there is no command 'lsit'; did you mean 'list'?\n"
                                "'qximportjob help' shows the commands.\n");
  EXPECT_EQ(messages({"list", "--staet", "waiting"}),
            "qximportjob: the command has no option '--staet'; did you mean '--state'?\n"
            "'qximportjob help list' shows the usage.\n");
  EXPECT_EQ(messages({"settings", "lits"}),
            "qximportjob: there is no command 'settings lits'; did you mean 'list'?\n"
            "'qximportjob help settings' shows the commands.\n");
  EXPECT_EQ(messages({"abrakadabra"}), "qximportjob: there is no command 'abrakadabra'\n"
                                       "'qximportjob help' shows the commands.\n");
  EXPECT_EQ(messages({}), "qximportjob: a command is missing\n'qximportjob help' shows the commands.\n");
  EXPECT_EQ(messages({"lock"}), "qximportjob: the command lock needs another word\n"
                                "'qximportjob help lock' shows the commands.\n");
  EXPECT_NE(messages({"show"}).find("JOBID is required"), std::string::npos);
  EXPECT_NE(messages({"help", "lisst"}).find("did you mean 'list'?"), std::string::npos);
  EXPECT_EQ(messages({"list", "eins", "zwei"}), "qximportjob: too many arguments: 'eins' 'zwei'\n"
                                                "'qximportjob help list' shows the usage.\n");
  EXPECT_EQ(messages({"status", "--runs", "x"}), "qximportjob: --runs: 'x' is not a number\n"
                                                 "'qximportjob help status' shows the usage.\n");
  EXPECT_EQ(runPlain({"-V"}).output, runPlain({"--version"}).output);
}

TEST_F(Help, KindsAndStatesAreUnderstoodInBothLanguages) {
  mustStage(
      R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K"},{"type":"Vertrag","JobID":"V"},{"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"A"},
                {"type":"Vertrag","JobID":"KV","JobType":40}])");
  setJobType("K", 12);
  const auto only = [&](const char* option, const char* word) {
    const auto found = listed({option, word});
    return found.size() == 1 ? found.front() : "";
  };
  for (const char* word : {"kunde", "Kunden", "CUSTOMER", "customers"})
    EXPECT_EQ(only("--kind", word), "K") << word;
  for (const char* word : {"Vertrag", "verträge", "VERTRÄGE", "vertra\u0308ge", "vertraege", "contracts"})
    EXPECT_EQ(only("--kind", word), "V") << word;
  for (const char* word : {"aufträge", "Orders"}) EXPECT_EQ(only("--kind", word), "A") << word;
  for (const char* word : {"Kundenverträge", "customer-contract"})
    EXPECT_EQ(only("--kind", word), "KV") << word;
  for (const char* word : {"error", "Errors", "Fehler"}) EXPECT_EQ(only("--state", word), "K") << word;
  for (const char* word : {"wartet", "Waiting"}) EXPECT_EQ(listed({"--state", word}).size(), 3U) << word;
  for (const char* word : {"", "kund", "deleted"})
    EXPECT_EQ(run({"list", "--state", word}).status, 2) << word;
  for (const char* word : {"Kunden", "orders", "ALL", "Zubehör"})
    EXPECT_NE(run({"process", "--select", word}).status, 2) << word;
}

TEST_F(Help, LongTextsGoThroughThePagerOnATerminalOnly) {
  mustStage(R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K","Betreff":"\u001b[2J"})");
  variables["PAGER"] = "sed s/^/seite:/";
  const TerminalResult list = runAtTerminal(onDatabase({"list"}), variables);
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.screen.lines().front().substr(0, 11), "seite:Stand");
  EXPECT_EQ(list.bytes.find("\033[2J"), std::string::npos);
  EXPECT_EQ(runAtTerminal(onDatabase({"process"}), variables).bytes.find("seite:"), std::string::npos);
  EXPECT_EQ(run({"list"}).output.substr(0, 5), "Stand");
}

TEST_F(Help, AListIsFilteredSortedAndFormedAsAsked) {
  mustStage(
      R"([{"type":"Kunde","JobID":"a","Kundennummer":"3","Bez1":"Ähre, \"Gold\"","Eingangsdatum":"1.11.2026"},
                {"type":"Kunde","JobID":"b","Kundennummer":"2","Bez1":"Mühle","Eingangsdatum":"3.11.2026"},
                {"type":"Auftrag","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"c","Kundennummer":"1","Betreff":"für die ähre","Eingangsdatum":"2.11.2026"}])");
  using Keys = std::vector<std::string>;
  EXPECT_EQ(listed({"--sort", "kunde"}), (Keys{"c", "b", "a"}));
  EXPECT_EQ(listed({"--sort", "-Eingang"}), (Keys{"b", "c", "a"}));
  EXPECT_EQ(listed({"--search", "ÄHRE"}), (Keys{"a", "c"}));
  EXPECT_EQ(listed({"--search", "ähre", "--limit", "1"}), Keys{"a"});
  EXPECT_EQ(listed({"--since", "02.11.2026"}), (Keys{"c", "b"}));
  EXPECT_EQ(listed({"--jobid", "B", "--jobid", "c"}), (Keys{"c", "b"}));
  EXPECT_EQ(listed({"--jobid", "b", "--jobid", "c", "--kind", "kunde"}), Keys{"b"});
  EXPECT_EQ(run({"list", "--csv", "--columns", "JobID,Bez1,jobtype", "--sort", "jobid"}).output,
            "JobID,Bez1,JobType\r\na,\"Ähre, \"\"Gold\"\"\",10\r\nb,Mühle,10\r\nc,,30\r\n");
  EXPECT_EQ(run({"list", "--columns", "Kundennummer,JobID", "--limit", "1"}).output,
            "Kundennummer      JobID\n3                 a\n");
  EXPECT_EQ(run({"list", "--json=lines", "--columns", "JobID", "--limit", "1"}).output,
            "{\"JobID\":\"a\"}\n");
  EXPECT_NE(
      run({"list", "--columns", "Bez9"}).messages.find("there is no column 'Bez9'; did you mean 'Bez1'?"),
      std::string::npos);
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{"--sort", "farbe"}, {"--since", "bald"}, {"--csv", "--json"}}) {
    std::vector<std::string> words{"list"};
    words.insert(words.end(), wrong.begin(), wrong.end());
    EXPECT_EQ(run(words).status, 2) << wrong.front();
  }
}

} // namespace
} // namespace qx
