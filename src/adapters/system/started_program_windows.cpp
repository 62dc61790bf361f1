// Another program beside this one by the calls of Windows.
#include "platform/started_program.h"

#include "adapters/system/command_words.h"
#include "adapters/system/wide_text.h"

#include <windows.h>

#include <algorithm>
#include <system_error>

namespace qx {
namespace {

class Child final : public StartedProgram {
public:
  explicit Child(HANDLE process) : process_(process) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() override { CloseHandle(process_); }

  std::optional<int> ended() override {
    DWORD status = 0;
    if (WaitForSingleObject(process_, 0) != WAIT_OBJECT_0 || GetExitCodeProcess(process_, &status) == 0)
      return std::nullopt;
    return static_cast<int>(status);
  }
  std::optional<int> untilReady(std::chrono::milliseconds limit) override {
    const auto most = static_cast<DWORD>(limit.count());
    // A program without windows never waits for its user.
    if (WaitForInputIdle(process_, most) == WAIT_FAILED) WaitForSingleObject(process_, most);
    return ended();
  }

private:
  HANDLE process_;
};

/// The variables as a new program takes them: one behind the other, each with a NUL, and another one at the
/// end.
std::wstring environmentWith(const std::vector<std::pair<std::string, std::string>>& variables) {
  std::wstring block;
  const auto add = [&](std::wstring_view setting) { block.append(setting).append(1, L'\0'); };
  for (const auto& [name, value] : variables) add(wide(name) + L"=" + wide(value));
  wchar_t* const inherited = GetEnvironmentStringsW();
  for (const wchar_t* at = inherited; at != nullptr && *at != L'\0';) {
    const std::wstring_view setting(at);
    at += setting.size() + 1;
    const std::wstring name(setting.substr(0, setting.find(L'=', 1)));
    if (std::ranges::none_of(variables, [&](const auto& each) {
          return _wcsicmp(wide(each.first).c_str(), name.c_str()) == 0;
        }))
      add(setting);
  }
  FreeEnvironmentStringsW(inherited);
  block += L'\0';
  return block;
}

} // namespace

std::unique_ptr<StartedProgram>
startProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
             const std::vector<std::pair<std::string, std::string>>& variables) {
  std::filesystem::path file = program;
  file += L".exe";
  std::wstring line;
  appendWord(line, file.wstring());
  for (const std::string& argument : arguments) appendWord(line, wide(argument));
  std::wstring environment = environmentWith(variables);
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION started{};
  if (CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT,
                     environment.data(), nullptr, &start, &started) == 0)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
  CloseHandle(started.hThread);
  return std::make_unique<Child>(started.hProcess);
}

} // namespace qx
