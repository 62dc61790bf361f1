#include "adapters/local_settings/ini_local_settings.h"
#include "adapters/local_settings/user_settings.h"

namespace qx {

std::string UserSettings::read(std::string_view application, std::string_view section, std::string_view key) {
  return IniLocalSettings(defaultLocalSettingsFile()).read(application, section, key);
}

void UserSettings::write(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view value) {
  IniLocalSettings(defaultLocalSettingsFile()).write(application, section, key, value);
}

} // namespace qx
