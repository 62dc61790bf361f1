// Where the settings of the current user lie on this system.
#pragma once

#include "platform/system.h"

namespace qx {

/// The settings file of the user, on Windows the registry: below HKEY_CURRENT_USER\Software\VB and VBA
/// Program Settings a key per application with one per section, where the programs' own GetSetting looks for
/// them. Found on demand: most commands need none.
class UserSettings final : public LocalSettings {
public:
  std::string read(std::string_view application, std::string_view section, std::string_view key) override;
  void write(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override;
};

} // namespace qx
