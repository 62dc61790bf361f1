// Another program, which this one waits for: Windows cannot replace a process.
#include "adapters/system/command_words.h"
#include "adapters/system/wide_text.h"
#include "platform/path_text.h"
#include "platform/program_start.h"

#include <windows.h>

#include <string_view>
#include <system_error>

namespace qx {
namespace {

[[noreturn]] void raiseLast() {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

} // namespace

void appendWord(std::wstring& line, std::wstring_view word) {
  if (!line.empty()) line += L' ';
  if (!word.empty() && word.find_first_of(L" \t\n\v\"") == std::wstring_view::npos) {
    line += word;
    return;
  }
  line += L'"';
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') line.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    line += c;
  }
  line.append(backslashes, L'\\');
  line += L'"';
}

std::filesystem::path ownProgram() {
  constexpr std::size_t longestName = 32768;
  std::wstring name(longestName, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  if (length == 0) raiseLast();
  name.resize(length);
  return name;
}

int continueAs(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::filesystem::path file = program;
  file += L".exe";
  std::wstring line;
  appendWord(line, file.wstring());
  for (const std::string& argument : arguments) appendWord(line, wide(argument));
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION started{};
  if (CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                     &started) == 0)
    raiseLast();
  CloseHandle(started.hThread);
  WaitForSingleObject(started.hProcess, INFINITE);
  DWORD status = 1;
  GetExitCodeProcess(started.hProcess, &status);
  CloseHandle(started.hProcess);
  return static_cast<int>(status);
}

} // namespace qx
