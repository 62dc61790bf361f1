// Runs the program as a program: arguments in, exit status and both outputs out.
#pragma once

#include "support/test_erp.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace qx {

using Json = nlohmann::ordered_json;

struct ProgramResult {
  int status = -1; ///< exit status; 1000 and more for a signal
  std::string output;
  std::string messages;

  /// The output as JSON; the test fails when it is not valid.
  Json json() const;
};

/// A process of the program whose outputs go to files. JSON is compared with its schema.
class ProgramRun {
public:
  ProgramRun(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
             const std::map<std::string, std::string>& variables, std::string_view input);
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;
  /// Kills what still runs.
  ~ProgramRun();

  void signal(int number) const;
  /// True when the process has written to its standard output within ten seconds.
  bool waitForOutput() const;
  ProgramResult wait();
  /// Nothing when the process still runs after that time.
  std::optional<ProgramResult> waitAtMost(std::chrono::seconds limit);

private:
  ProgramResult ended(int status);

  const TemporaryFolder& folder_;
  std::string name_;
  std::vector<std::string> arguments_;
  pid_t process_ = -1;
};

/// A database with base data and no jobs. The session date is 24.11.2026.
class ProgramTest : public ::testing::Test {
protected:
  /// Runs a command on the test's database.
  ProgramResult run(std::vector<std::string> arguments, std::string_view input = {}) const;
  /// Runs exactly these arguments.
  ProgramResult runPlain(const std::vector<std::string>& arguments, std::string_view input = {}) const;
  ProgramResult stage(std::string_view jobs, std::vector<std::string> options = {}) const;
  /// The same for jobs that are accepted; raises otherwise.
  void mustStage(std::string_view jobs, std::vector<std::string> options = {}) const;
  /// Leaves a staged job without a number, as an entry object may.
  void takeNumber(std::string_view jobId);
  Json show(const std::string& jobId) const;
  /// The keys of all jobs in the order of the list.
  std::vector<std::string> listed(std::vector<std::string> options = {}) const;
  void setJobType(std::string_view jobId, std::int64_t jobType);
  std::vector<std::string> onDatabase(std::vector<std::string> arguments) const;

  TestErp erp;
  /// Home and data folders inside the test's own folder.
  std::map<std::string, std::string> variables{{"HOME", (erp.folder.path() / "home").string()},
                                               {"PATH", "/usr/bin:/bin"}};
};

} // namespace qx
