// Lets single requests of a run for memory fail, then runs again: every run ends with a sentence and a
// status, and the one after it leaves what an undisturbed one leaves. A few places here, all by
// scripts/fault_matrix.sh.
#include "faults/fault_fixture.h"

#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {
namespace {

/// A command, and what is compared of it beside the rows.
struct MemoryCommand {
  std::string name;
  std::vector<std::string> arguments;
  std::string input = {};
  bool onlyReads = false;             ///< its output is compared, too
  std::filesystem::path written = {}; ///< a file that it writes, if any
};

std::size_t numberFrom(const char* variable, std::size_t fallback) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? fallback : std::stoul(text);
}

class MemoryFaults : public FaultTest {
protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers bring their own memory";
#endif
  }

  /// QX_FAULT_POINTS places of all; with 0 every QX_FAULT_STEP-th of them, or the first one of each call path
  /// of QX_FAULT_PATHS callers.
  void expectRecovery(const MemoryCommand& command) {
    keepStart();
    std::filesystem::remove(folder.path() / "report");
    auto variables = faultVariables();
    if (const char* const paths = std::getenv("QX_FAULT_PATHS")) variables.emplace("FAULT_PATHS", paths);
    const auto undisturbed = run(command.arguments, command.input, variables);
    ASSERT_TRUE(undisturbed && undisturbed->status <= 1) << (undisturbed ? undisturbed->messages : "hangs");
    expected_ = rowsOf(file);
    output_ = undisturbed->output;
    written_ = contentOf(command.written);
    const auto [requests, places] = placesToFail(folder.read("report"));
    std::map<int, int> statuses;
    std::size_t reached = 0;
    std::size_t failed = 0;
    for (const std::size_t at : places) {
      std::filesystem::remove(folder.path() / "report");
      const std::string problem = tryPoint(command, at, statuses);
      if (std::filesystem::exists(folder.path() / "report")) ++reached;
      if (problem.empty()) continue;
      ++failed;
      ADD_FAILURE() << command.name << ", request " << at << " for memory fails: " << problem;
    }
    EXPECT_GE(reached * 4, places.size() * 3) << "the faults did not take place";
    std::cout << std::left << std::setw(9) << command.name << std::right << std::setw(7) << requests
              << " requests" << std::setw(6) << places.size() << " tried" << std::setw(5) << failed
              << " failed; status";
    for (const auto& [status, count] : statuses) std::cout << "  " << status << ": " << count;
    std::cout << std::endl;
  }

  /// The number of all requests, and those that are to fail.
  static std::pair<std::size_t, std::vector<std::size_t>> placesToFail(const std::string& report) {
    std::istringstream lines(report);
    std::vector<std::size_t> places{std::istream_iterator<std::size_t>(lines), {}};
    const std::size_t requests = places.back();
    places.pop_back();
    if (!places.empty()) return {requests, places};
    constexpr std::size_t sample = 6;
    const std::size_t points = numberFrom("QX_FAULT_POINTS", sample);
    const std::size_t step = points == 0 ? numberFrom("QX_FAULT_STEP", 1) : requests / points;
    for (std::size_t at = 1 + step / 2; at <= requests; at += step) places.push_back(at);
    return {requests, places};
  }

  /// What is wrong after a fault, or after the run that follows it; empty when nothing is.
  std::string tryPoint(const MemoryCommand& command, std::size_t at, std::map<int, int>& statuses) {
    restore();
    if (!command.written.empty()) std::filesystem::remove(command.written);
    auto variables = faultVariables();
    variables.emplace("FAULT_AT", std::to_string(at));
    const auto result = run(command.arguments, command.input, variables);
    if (!result) return "hangs";
    ++statuses[result->status];
    const std::string told = "status " + std::to_string(result->status) + ": " + result->messages;
    if (result->status < 0 || result->status > 5) return told;
    if (result->status > 1 && result->messages.empty()) return told + "without a word";
    const Rows found = rowsOf(copyOfDatabase());
    if (result->status <= 1) {
      if (const auto wrong = difference(expected_, found); !wrong.empty())
        return told + " in spite of" + wrong;
      if (command.onlyReads && result->output != output_) return told + " in spite of\n" + result->output;
      if (contentOf(command.written) != written_) return told + ", but another file is written";
    }
    const auto again = run(command.arguments, command.input);
    if (!again) return "hangs when it is run again";
    if (again->status < 0 || again->status > 1)
      return told + "; run again: status " + std::to_string(again->status) + ": " + again->messages;
    if (const auto wrong = difference(expected_, rowsOf(file)); !wrong.empty())
      return told + "; run again:" + wrong;
    if (command.onlyReads && again->output != output_) return told + "; run again:\n" + again->output;
    if (contentOf(command.written) != written_) return told + "; run again, another file is written";
    return {};
  }

  std::string contentOf(const std::filesystem::path& written) const {
    return written.empty() || !std::filesystem::exists(written) ? std::string()
                                                                : folder.read(written.filename().string());
  }

  std::map<std::string, std::string> faultVariables() const {
    return {{"LD_PRELOAD", FAILING_MEMORY}, {"FAULT_REPORT", (folder.path() / "report").string()}};
  }

private:
  Rows expected_;
  std::string output_, written_;
};

TEST_F(MemoryFaults, ADatabaseIsCreatedByTheNextAttempt) {
  std::filesystem::remove(file);
  expectRecovery({.name = "init", .arguments = {"init"}});
}

TEST_F(MemoryFaults, AFileIsStagedByTheNextAttempt) {
  expectRecovery({.name = "stage", .arguments = {"stage", "-"}, .input = std::string(sampleJobs)});
}

TEST_F(MemoryFaults, JobsAreCheckedListedAndShownAsTheyAre) {
  stageSample();
  expectRecovery({.name = "check", .arguments = {"check"}, .onlyReads = true});
  expectRecovery({.name = "list", .arguments = {"list"}, .onlyReads = true});
  expectRecovery({.name = "show", .arguments = {"show", "AUFTRAG"}, .onlyReads = true});
}

TEST_F(MemoryFaults, JobsAreReleasedByTheNextAttempt) {
  stageSample();
  edit([](Connection& database) {
    database.execute(sql("Update ImportKopf Set JobType = JobType + 1 Where JobType % 10 = 0"_sql));
  });
  expectRecovery({.name = "release", .arguments = {"release", "--all-warnings"}});
}

TEST_F(MemoryFaults, EveryJobIsProcessedOnceWhateverRequestFails) {
  stageSample();
  expectRecovery({.name = "process", .arguments = {"process"}});
}

TEST_F(MemoryFaults, AProtocolIsPrintedWholeOrNotAtAll) {
  stageSample();
  ASSERT_EQ(run({"process"}, {})->status, 1);
  expectRecovery({.name = "protocol", .arguments = {"protocol"}, .onlyReads = true});
}

TEST_F(MemoryFaults, AJobFileIsWrittenAndReadByTheNextAttempt) {
  stageSample();
  const std::string jobs = (folder.path() / "jobs.edi").string();
  expectRecovery({.name = "export", .arguments = {"export", jobs}, .onlyReads = true, .written = jobs});
  edit([](Connection& database) {
    database.execute(sql("Delete From ImportPos"_sql));
    database.execute(sql("Delete From ImportKopf Where JobID <> 'AUFTRAG'"_sql));
  });
  expectRecovery({.name = "import", .arguments = {"import", jobs}});
}

TEST_F(MemoryFaults, APurgeThatIsRepeatedIsComplete) {
  stageSample();
  ASSERT_EQ(run({"process"}, {})->status, 1);
  expectRecovery({.name = "purge", .arguments = {"purge"}});
}

TEST_F(MemoryFaults, AnOptionIsStoredByTheNextAttempt) {
  expectRecovery(
      {.name = "settings", .arguments = {"settings", "set", "ImportJob2", "KundenVertreter", "1"}});
}

} // namespace
} // namespace qx
