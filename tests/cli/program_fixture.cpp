#include "program_fixture.h"

#include "described_outputs.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qx {
namespace {

constexpr int signalled = 1000;

int exitStatus(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status); }

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> list;
  for (std::string& text : texts) list.push_back(text.data());
  list.push_back(nullptr);
  return list;
}

std::string freshName() {
  static int number = 0;
  return "run" + std::to_string(++number);
}

} // namespace

Json ProgramResult::json() const {
  Json document = Json::parse(output, nullptr, false);
  EXPECT_FALSE(document.is_discarded()) << "no JSON: " << output << messages;
  return document;
}

ProgramRun::ProgramRun(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& variables, std::string_view input)
    : folder_(folder), name_(freshName()), arguments_(arguments) {
  folder_.write(name_ + ".in", input);
  const auto file = [&](const char* ending) { return (folder_.path() / (name_ + ending)).string(); };
  std::vector<std::string> words{QXIMPORTJOB_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> settings;
  for (const auto& [key, setting] : variables) settings.push_back(key + "=" + setting);

  posix_spawn_file_actions_t actions{};
  posix_spawn_file_actions_init(&actions);
  constexpr int mode = 0600;
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, file(".in").c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, file(".out").c_str(), O_WRONLY | O_CREAT, mode);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, file(".err").c_str(), O_WRONLY | O_CREAT, mode);
  const int failure = posix_spawn(&process_, words.front().c_str(), &actions, nullptr, pointers(words).data(),
                                  pointers(settings).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error("the program could not be started: " + words.front());
}

ProgramRun::~ProgramRun() {
  if (process_ < 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

void ProgramRun::signal(int number) const { kill(process_, number); }

bool ProgramRun::waitForOutput() const {
  constexpr int tries = 1000;
  for (int i = 0; i < tries; ++i) {
    std::error_code ignored;
    const auto size = std::filesystem::file_size(folder_.path() / (name_ + ".out"), ignored);
    if (!ignored && size > 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

ProgramResult ProgramRun::wait() {
  int status = 0;
  waitpid(process_, &status, 0);
  return ended(status);
}

std::optional<ProgramResult> ProgramRun::waitAtMost(std::chrono::seconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(process_, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) return std::nullopt;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return ended(status);
}

ProgramResult ProgramRun::ended(int status) {
  process_ = -1;
  ProgramResult result{exitStatus(status), folder_.read(name_ + ".out"), folder_.read(name_ + ".err")};
  expectDescribed(arguments_, result.output);
  return result;
}

ProgramResult ProgramTest::runPlain(const std::vector<std::string>& arguments, std::string_view input) const {
  return ProgramRun(erp.folder, arguments, variables, input).wait();
}

std::vector<std::string> ProgramTest::onDatabase(std::vector<std::string> arguments) const {
  const std::vector<std::string> common{"--db", erp.file, "--date", "24.11.2026"};
  arguments.insert(arguments.begin(), common.begin(), common.end());
  return arguments;
}

ProgramResult ProgramTest::run(std::vector<std::string> arguments, std::string_view input) const {
  return runPlain(onDatabase(std::move(arguments)), input);
}

ProgramResult ProgramTest::stage(std::string_view jobs, std::vector<std::string> options) const {
  options.insert(options.begin(), {"stage", "-", "--json"});
  return run(std::move(options), jobs);
}

void ProgramTest::mustStage(std::string_view jobs, std::vector<std::string> options) const {
  const ProgramResult result = stage(jobs, std::move(options));
  if (result.status != 0) throw std::runtime_error(result.messages);
}

void ProgramTest::takeNumber(std::string_view jobId) {
  erp.execute("Update ImportKopf Set Kundennummer = '' Where JobID = '"_sql, value(jobId), "'"_sql);
}

Json ProgramTest::show(const std::string& jobId) const { return run({"show", jobId, "--json"}).json(); }

std::vector<std::string> ProgramTest::listed(std::vector<std::string> options) const {
  options.insert(options.begin(), {"list", "--json"});
  std::vector<std::string> keys;
  const Json list = run(std::move(options)).json();
  for (const Json& job : list["jobs"]) keys.push_back(job["JobID"]);
  return keys;
}

void ProgramTest::setJobType(std::string_view jobId, std::int64_t jobType) {
  erp.execute("Update ImportKopf Set JobType = "_sql, number(jobType), " Where JobID = '"_sql, value(jobId),
              "'"_sql);
}

} // namespace qx
