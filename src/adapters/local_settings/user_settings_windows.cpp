// The settings of the user in the registry.
#include "adapters/local_settings/user_settings.h"
#include "adapters/system/wide_text.h"

#include <windows.h>

#include <stdexcept>
#include <system_error>

namespace qx {
namespace {

std::wstring keyOf(std::string_view application, std::string_view section) {
  return L"Software\\VB and VBA Program Settings\\" + wide(application) + L"\\" + wide(section);
}

[[noreturn]] void fail(std::wstring_view key, std::string_view verb, LSTATUS error) {
  throw std::runtime_error("the registry key 'HKEY_CURRENT_USER\\" + narrow(key) + "' cannot be " +
                           std::string(verb) + ": " + std::system_category().message(error));
}

} // namespace

std::string UserSettings::read(std::string_view application, std::string_view section, std::string_view key) {
  const std::wstring path = keyOf(application, section);
  const std::wstring name = wide(key);
  std::wstring value;
  DWORD size = 0;
  LSTATUS error = ERROR_MORE_DATA;
  // It may grow between the two calls.
  while (error == ERROR_MORE_DATA) {
    value.resize(size / sizeof(wchar_t));
    error = RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr,
                         size == 0 ? nullptr : value.data(), &size);
    if (error == ERROR_SUCCESS && size == 0) return {};
    if (error == ERROR_SUCCESS && value.empty()) error = ERROR_MORE_DATA;
  }
  if (error == ERROR_FILE_NOT_FOUND) return {};
  if (error != ERROR_SUCCESS) fail(path, "read", error);
  // The size counts the character that ends the text.
  value.resize(size / sizeof(wchar_t) - 1);
  return narrow(value);
}

void UserSettings::write(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view value) {
  const std::wstring path = keyOf(application, section);
  const std::wstring text = wide(value);
  const LSTATUS error =
      RegSetKeyValueW(HKEY_CURRENT_USER, path.c_str(), wide(key).c_str(), REG_SZ, text.c_str(),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  if (error != ERROR_SUCCESS) fail(path, "written", error);
}

} // namespace qx
