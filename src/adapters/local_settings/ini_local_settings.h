// The settings of the current user in an INI file.
#pragma once

#include "adapters/local_settings/shared_file.h"
#include "platform/system.h"

#include <filesystem>

namespace qx {

/// `$XDG_CONFIG_HOME/qximportjob/settings.ini`, else the same below `~/.config`. Raises `std::runtime_error`
/// when the user has no home directory.
std::filesystem::path defaultLocalSettingsFile();

/// One INI section "application/section" per pair of them. Names ignore ASCII case. Every text is read back
/// as it was written; comments and foreign keys stay in the file.
///
/// Nothing is cached: a value written by another process is seen at once.
class IniLocalSettings final : public LocalSettings {
public:
  explicit IniLocalSettings(std::filesystem::path file) : file_(std::move(file)) {}

  std::string read(std::string_view application, std::string_view section, std::string_view key) override;
  void write(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override;

private:
  SharedFile file_;
};

} // namespace qx
