// The standard streams by the calls of POSIX.
#include "platform/terminal.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qx {
namespace {

bool understandsEscapes(int stream) {
  const char* kind = std::getenv("TERM");
  return isatty(stream) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}

} // namespace

bool isErrorTerminal() { return understandsEscapes(STDERR_FILENO); }

bool isOutputTerminal() { return understandsEscapes(STDOUT_FILENO); }

std::optional<std::size_t> terminalColumns(int stream) {
  winsize size{};
  if (ioctl(stream, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

bool isSystemLog(int stream) {
  // systemd names the device and inode of the stream that it has connected to its journal.
  const char* journal = std::getenv("JOURNAL_STREAM");
  struct stat status {};
  if (journal == nullptr || fstat(stream, &status) != 0) return false;
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino) == journal;
}

bool isStandardOutput(const std::filesystem::path& file) {
  struct stat named {};
  struct stat output {};
  return stat(file.c_str(), &named) == 0 && fstat(STDOUT_FILENO, &output) == 0 && !S_ISREG(named.st_mode) &&
         named.st_dev == output.st_dev && named.st_ino == output.st_ino;
}

void writeToStandardError(std::string_view text) noexcept {
  [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
}

} // namespace qx
