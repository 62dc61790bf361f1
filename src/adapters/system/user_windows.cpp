// User, environment and folders of Windows.
#include "adapters/system/user.h"
#include "adapters/system/wide_text.h"
#include "platform/path_text.h"

#include <windows.h>

#include <lmcons.h>

#include <array>

namespace qx {

std::optional<std::string> environmentVariable(const char* name) {
  const std::wstring wideName = wide(name);
  std::wstring value(1, L'\0');
  // It may grow between the two calls.
  for (;;) {
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
    if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
    if (length < value.size()) return narrow({value.data(), length});
    value.resize(length);
  }
}

std::string loginName() {
  std::array<wchar_t, UNLEN + 1> name{};
  auto length = static_cast<DWORD>(name.size());
  if (GetUserNameW(name.data(), &length) != 0) return narrow(name.data());
  return environmentVariable("USERNAME").value_or("");
}

std::optional<std::filesystem::path> userDataFolder() {
  const auto data = environmentVariable("LOCALAPPDATA");
  if (!data || !pathOf(*data).is_absolute()) return std::nullopt;
  return pathOf(*data) / "qximportjob";
}

} // namespace qx
