// The standard streams of Windows.
#include "platform/terminal.h"

#include <windows.h>

namespace qx {
namespace {

bool understandsEscapes(DWORD stream) {
  const HANDLE handle = GetStdHandle(stream);
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0 &&
         SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

} // namespace

bool isErrorTerminal() { return understandsEscapes(STD_ERROR_HANDLE); }

bool isOutputTerminal() { return understandsEscapes(STD_OUTPUT_HANDLE); }

std::optional<std::size_t> terminalColumns(int stream) {
  CONSOLE_SCREEN_BUFFER_INFO screen{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(stream == standardError ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE),
                                 &screen) == 0)
    return std::nullopt;
  return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
}

bool isSystemLog(int /*stream*/) { return false; }

// Pipes and consoles have no name here by which a user could mean standard output.
bool isStandardOutput(const std::filesystem::path& /*file*/) { return false; }

void writeToStandardError(std::string_view text) noexcept {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_ERROR_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

} // namespace qx
