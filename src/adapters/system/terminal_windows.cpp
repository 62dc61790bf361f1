// The standard streams of Windows.
#include "platform/terminal.h"

#include <windows.h>

namespace qx {

bool isErrorTerminal() {
  const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(error, &mode) != 0 &&
         SetConsoleMode(error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

// Pipes and consoles have no name here by which a user could mean standard output.
bool isStandardOutput(const std::filesystem::path& /*file*/) { return false; }

void writeToStandardError(std::string_view text) noexcept {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_ERROR_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

} // namespace qx
