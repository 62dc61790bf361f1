#include "adapters/local_settings/ini_local_settings.h"

#include "adapters/local_settings/ini_text.h"

#include <cstdlib>
#include <stdexcept>

namespace qx {
namespace {

std::filesystem::path configFolder() {
  if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder != nullptr && *folder == '/') return folder;
  if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
    return std::filesystem::path(home) / ".config";
  throw std::runtime_error(
      "there is no folder for the local settings: neither XDG_CONFIG_HOME nor HOME is set");
}

} // namespace

std::filesystem::path defaultLocalSettingsFile() { return configFolder() / "qximportjob" / "settings.ini"; }

std::string IniLocalSettings::read(std::string_view application, std::string_view section,
                                   std::string_view key) {
  const auto content = file_.read();
  return content ? settingIn(*content, application, section, key) : std::string();
}

void IniLocalSettings::write(std::string_view application, std::string_view section, std::string_view key,
                             std::string_view value) {
  file_.rewrite(
      [&](std::string_view content) { return withSetting(content, application, section, key, value); });
}

} // namespace qx
