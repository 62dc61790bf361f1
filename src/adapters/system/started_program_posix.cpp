// Another program beside this one by the calls of POSIX.
#include "platform/started_program.h"

#include <algorithm>
#include <cerrno>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace qx {
namespace {

class Child final : public StartedProgram {
public:
  explicit Child(pid_t process) : process_(process) {}

  std::optional<int> ended() override {
    if (status_) return status_;
    int state = 0;
    if (waitpid(process_, &state, WNOHANG) != process_) return std::nullopt;
    // As a shell counts the signals.
    constexpr int firstSignal = 128;
    status_ = WIFEXITED(state) ? WEXITSTATUS(state) : firstSignal + WTERMSIG(state);
    return status_;
  }
  std::optional<int> untilReady(std::chrono::milliseconds limit) override {
    constexpr std::chrono::milliseconds step{10};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!ended() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(step);
    return ended();
  }

private:
  pid_t process_;
  std::optional<int> status_;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

} // namespace

std::unique_ptr<StartedProgram>
startProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
             const std::vector<std::pair<std::string, std::string>>& variables) {
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), program.string());
  std::vector<std::string> settings;
  settings.reserve(variables.size());
  for (const auto& [name, value] : variables) settings.push_back(std::string(name).append("=").append(value));
  for (char** inherited = environ; *inherited != nullptr; ++inherited) {
    const std::string_view setting(*inherited);
    const std::string_view name = setting.substr(0, setting.find('='));
    if (std::ranges::none_of(variables, [&](const auto& each) { return each.first == name; }))
      settings.emplace_back(setting);
  }
  pid_t process = 0;
  const int failure = posix_spawn(&process, program.c_str(), nullptr, nullptr, pointersTo(words).data(),
                                  pointersTo(settings).data());
  if (failure != 0) throw std::system_error(failure, std::generic_category());
  return std::make_unique<Child>(process);
}

} // namespace qx
