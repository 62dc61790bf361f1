#include "driver/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace qx::bench {
namespace {

class Redirections {
public:
  explicit Redirections(const std::string& messages) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    constexpr mode_t readable = 0644;
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, messages.c_str(), flags, readable);
  }
  Redirections(const Redirections&) = delete;
  Redirections& operator=(const Redirections&) = delete;
  ~Redirections() { posix_spawn_file_actions_destroy(&actions_); }

  const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
  posix_spawn_file_actions_t actions_{};
};

pid_t start(const Command& command, const std::string& messages) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const Redirections redirections(messages);
  pid_t child = 0;
  const int error =
      posix_spawn(&child, arguments.front(), redirections.get(), nullptr, arguments.data(), environ);
  if (error != 0) throw std::system_error(error, std::generic_category(), command.front());
  return child;
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void fail(const Command& command, int status, const std::filesystem::path& messages) {
  std::ostringstream text;
  for (const std::string& word : command) text << word << ' ';
  if (WIFEXITED(status))
    text << "ended with status " << WEXITSTATUS(status) << '\n';
  else
    text << "was ended by signal " << WTERMSIG(status) << '\n';
  text << std::ifstream(messages).rdbuf();
  throw std::runtime_error(text.str());
}

} // namespace

Measurement measure(const Command& command, const std::filesystem::path& messages) {
  const auto begun = std::chrono::steady_clock::now();
  const pid_t child = start(command, messages.string());
  int status = 0;
  rusage usage{};
  while (wait4(child, &status, 0, &usage) < 0)
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "wait4");
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) fail(command, status, messages);
  constexpr double kibPerMib = 1024;
  return {taken.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / kibPerMib};
}

std::uint64_t countInstructions(const Command& command, const std::filesystem::path& messages) {
  Command counted{"/usr/bin/env", "LD_PRELOAD=" SLOW_CLOCK, "/usr/bin/valgrind", "--tool=callgrind",
                  "--callgrind-out-file=/dev/null"};
  counted.insert(counted.end(), command.begin(), command.end());
  measure(counted, messages);
  constexpr std::string_view total = "Collected : ";
  std::ifstream lines(messages);
  for (std::string line; std::getline(lines, line);)
    if (const auto at = line.find(total); at != std::string::npos)
      return std::stoull(line.substr(at + total.size()));
  throw std::runtime_error("valgrind has counted nothing: " + messages.string());
}

} // namespace qx::bench
