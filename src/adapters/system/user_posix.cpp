// User, environment and folders of a POSIX system.
#include "adapters/system/user.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace qx {

std::optional<std::string> environmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::string loginName() {
  if (const passwd* entry = getpwuid(geteuid())) return entry->pw_name;
  return environmentVariable("USER").value_or("");
}

std::optional<std::filesystem::path> userDataFolder() {
  // By definition a relative path in this variable counts as not set.
  std::filesystem::path data = environmentVariable("XDG_DATA_HOME").value_or("");
  if (!data.is_absolute()) {
    const std::string home = environmentVariable("HOME").value_or("");
    if (home.empty()) return std::nullopt;
    data = std::filesystem::path(home) / ".local" / "share";
  }
  return data / "qximportjob";
}

} // namespace qx
