// Lets every single call of a run to its storage fail, then runs again: every job is written once, whatever
// the moment. A few points of every kind here, all of them by scripts/fault_matrix.sh.
#include "faults/fault_fixture.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <sstream>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 4> callKinds{"write", "sync", "truncate", "open"};
constexpr std::array<std::string_view, 3> faultEffects{"error", "full", "kill"};

/// What a command wrote, with the content before it and without the fault.
struct Aftermath {
  const ProgramResult& result;
  const Rows& before;
  const Rows& found;
  const Rows& expected;
};

struct Command {
  std::string name;
  std::vector<std::string> arguments;
  std::string input = {};
  /// Judges the database right after the fault; empty when nothing is wrong.
  std::function<std::string(const Aftermath&)> judge = {};
};

/// The objects of a JSON document that may have been cut off at any place.
std::vector<Json> printedJobs(const std::string& output) {
  std::vector<Json> jobs;
  constexpr std::string_view start = R"({"JobID")";
  for (auto at = output.find(start); at != std::string::npos; at = output.find(start, at + 1)) {
    // A job holds objects of its own.
    for (auto end = output.find('}', at); end != std::string::npos; end = output.find('}', end + 1)) {
      const Json job = Json::parse(output.substr(at, end - at + 1), nullptr, false);
      if (job.is_discarded()) continue;
      jobs.push_back(job);
      break;
    }
  }
  return jobs;
}

std::string codes(const fs::path& file) {
  const auto database = SqliteDatabase().open(file.string());
  std::string text;
  for (const auto rows = database->open(sql("Select JobID, JobType From ImportKopf Order By JobID"_sql));
       !rows->eof(); rows->moveNext())
    text += rows->text("JobID") + " " + rows->text("JobType") + "\n";
  return text;
}

std::int64_t single(Connection& database, const Sql& statement) {
  return database.open(statement)->value(0).integer().value_or(-1);
}

class StorageFaults : public FaultTest {
protected:
  /// Every point of every kind with every effect, or as many as QX_FAULT_POINTS says.
  void expectRecovery(const Command& command) {
    before_ = rowsOf(file);
    keepStart();
    const auto undisturbed = run(command.arguments, command.input, faultVariables());
    ASSERT_TRUE(undisturbed && undisturbed->status <= 1) << (undisturbed ? undisturbed->messages : "hangs");
    expected_ = rowsOf(file);
    ASSERT_NE(before_, expected_);
    std::istringstream counts(folder.read("report"));
    std::string kind;
    std::size_t calls = 0;
    std::size_t kinds = 0;
    while (counts >> kind >> calls) {
      ++kinds;
      for (std::size_t effect = 0; effect < faultEffects.size(); ++effect)
        tryPoints(command, kind, effect, calls);
    }
    EXPECT_EQ(kinds, callKinds.size()) << "the calls were not counted";
  }

  /// The points of a sample are spread evenly, for every effect at another place.
  void tryPoints(const Command& command, const std::string& kind, std::size_t effect, std::size_t calls) {
    const char* wanted = std::getenv("QX_FAULT_POINTS");
    constexpr std::size_t sample = 3;
    const std::size_t limit = wanted == nullptr ? sample : std::stoul(wanted);
    const std::size_t count = limit == 0 ? calls : std::min(limit, calls);
    std::size_t failed = 0;
    std::size_t reached = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t shift = count < calls ? effect * calls / count / faultEffects.size() : 0;
      const std::size_t at = 1 + i * calls / count + shift;
      const std::string effectName(faultEffects[effect]);
      fs::remove(folder.path() / "report");
      const std::string problem = tryPoint(command, kind, effectName, at);
      if (fs::exists(folder.path() / "report")) ++reached;
      if (problem.empty()) continue;
      ++failed;
      ADD_FAILURE() << command.name << ", " << effectName << " at " << kind << " " << at << ": " << problem;
    }
    // How many jobs share a commit depends on the time they take, so the last points may be missed.
    EXPECT_GE(reached * 4, count * 3) << kind << ": the faults did not take place";
    std::cout << std::left << std::setw(9) << command.name << std::setw(9) << kind << std::setw(6)
              << faultEffects[effect] << std::right << std::setw(5) << count << " points " << std::setw(5)
              << count - failed << " passed " << std::setw(4) << failed << " failed" << std::endl;
  }

  /// What is wrong after a fault, or after the run that follows it; empty when nothing is.
  std::string tryPoint(const Command& command, const std::string& kind, const std::string& effect,
                       std::size_t at) {
    restore();
    auto variables = faultVariables();
    variables.merge(std::map<std::string, std::string>{
        {"FAULT_KIND", kind}, {"FAULT_EFFECT", effect}, {"FAULT_AT", std::to_string(at)}});
    const auto result = run(command.arguments, command.input, variables);
    if (!result) return "hangs";
    const bool reached = fs::exists(folder.path() / "report");
    const bool killed = result->status == killedStatus && effect == "kill" && reached;
    if (!killed && (result->status < 0 || (result->status > 1 && result->status != 4)))
      return "status " + std::to_string(result->status) + ": " + result->output + result->messages;
    Rows found = rowsOf(copyOfDatabase());
    // The run itself is complete then, and the next one takes the lock over.
    if (result->messages.find("The lock could not be released.") != std::string::npos)
      std::erase_if(found, [](const std::string& row) { return row.starts_with("LockControl|"); });
    if (result->status <= 1)
      if (const auto wrong = difference(expected_, found); !wrong.empty())
        return "status " + std::to_string(result->status) + " in spite of" + wrong + "\n" + result->messages;
    if (command.judge)
      if (const auto wrong = command.judge({*result, before_, found, expected_}); !wrong.empty())
        return "status " + std::to_string(result->status) + " and " + wrong;
    const auto again = run(command.arguments, command.input);
    if (!again) return "hangs when it is run again";
    if (again->status < 0 || again->status > 1)
      return "run again: status " + std::to_string(again->status) + ": " + again->output + again->messages;
    if (const auto wrong = difference(expected_, rowsOf(file)); !wrong.empty()) return "run again:" + wrong;
    return {};
  }

  std::map<std::string, std::string> faultVariables() const {
    return {{"LD_PRELOAD", FAILING_STORAGE},
            {"FAULT_NAME", "faulty"},
            {"FAULT_REPORT", (folder.path() / "report").string()},
            // The sanitizers want to be loaded first, and their findings must not look like those of a run.
            {"ASAN_OPTIONS", "verify_asan_link_order=0:exitcode=99"},
            {"UBSAN_OPTIONS", "exitcode=99"}};
  }

  static constexpr int killedStatus = 1000 + SIGKILL;

private:
  Rows before_, expected_;
};

/// A job is processed, marked and logged, or none of these; what was printed is durable.
std::string judgeRun(const fs::path& look, const Aftermath& aftermath) {
  const auto database = SqliteDatabase().open(look.string());
  const auto marked = single(*database, sql("Select Count(*) From ImportKopf Where JobType % 10 <> 0 And "
                                            "Coalesce(Fehlertext, '') <> 'freigegeben'"_sql));
  const auto logged = single(*database, sql("Select Count(*) From Protokollpositionen"_sql));
  if (marked != logged)
    return std::to_string(marked) + " jobs are marked, but " + std::to_string(logged) + " logged";
  const auto orders = single(*database, sql("Select Count(*) From Auftragskopf"_sql));
  const auto done = single(*database, sql("Select Count(*) From ImportKopf Where JobType = 33"_sql));
  if (orders != done) return std::to_string(orders) + " orders for " + std::to_string(done) + " jobs";
  for (const Json& job : printedJobs(aftermath.result.output)) {
    const std::string jobId = job["JobID"];
    const auto stored =
        single(*database, sql("Select JobType From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql));
    if (stored != job["JobType"].get<std::int64_t>())
      return jobId + " is printed, but stands at " + std::to_string(stored);
  }
  return {};
}

std::string judgeWhole(const Aftermath& aftermath) {
  if (aftermath.found == aftermath.before || aftermath.found == aftermath.expected) return {};
  return "only a part is written:" + difference(aftermath.expected, aftermath.found);
}

TEST_F(StorageFaults, EveryJobIsProcessedOnceWhateverCallFails) {
  stageSample();
  expectRecovery({"process", {"process", "--json"}, {}, [this](const Aftermath& aftermath) {
                    return judgeRun(copyOfDatabase(), aftermath);
                  }});
  EXPECT_EQ(codes(file),
            "AUFTRAG 33\nAUFTRAG-FALSCH 32\nAUFTRAG-NEUKUNDE 33\nKUNDE-BEKANNT 13\nKUNDE-CODE 11\n"
            "KUNDE-FREI 13\nKUNDE-NEU 13\nKUNDENVERTRAG 43\nVERTRAG 23\n");
}

TEST_F(StorageFaults, ADatabaseIsCreatedByTheNextAttempt) {
  fs::remove(file);
  expectRecovery({"init", {"init", "--json"}});
}

TEST_F(StorageFaults, AFileIsStagedWhollyOrNotAtAll) {
  stageSample();
  expectRecovery({"stage", {"stage", "-", "--json"}, std::string(furtherJobs), judgeWhole});
}

TEST_F(StorageFaults, AJobFileThatIsReadInAgainIsComplete) {
  stageSample();
  const std::string jobs = (folder.path() / "jobs.edi").string();
  must({"export", jobs});
  edit([](Connection& database) {
    database.execute(sql("Delete From ImportPos"_sql));
    database.execute(sql("Delete From ImportKopf Where JobID <> 'AUFTRAG'"_sql));
  });
  expectRecovery({"import", {"import", jobs, "--json"}});
}

TEST_F(StorageFaults, JobsAreReleasedTogetherOrNotAtAll) {
  stageSample();
  edit([](Connection& database) {
    database.execute(sql("Update ImportKopf Set JobType = JobType + 1 Where JobType % 10 = 0"_sql));
  });
  expectRecovery({"release", {"release", "--all-warnings"}, {}, judgeWhole});
}

TEST_F(StorageFaults, APurgeThatIsRepeatedIsComplete) {
  stageSample();
  ASSERT_EQ(run({"process"}, {})->status, 1);
  expectRecovery({"purge", {"purge", "--json"}});
}

} // namespace
} // namespace qx
