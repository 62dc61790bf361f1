// The standard streams by the calls of POSIX.
#include "platform/terminal.h"

#include <sys/stat.h>
#include <unistd.h>

namespace qx {

bool isErrorTerminal() { return isatty(STDERR_FILENO) != 0; }

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
