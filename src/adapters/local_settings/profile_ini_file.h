// Profile files of the ERP ("Zubehoer.ini").
#pragma once

#include "platform/system.h"

#include <string>
#include <string_view>

namespace qx {

/// The value of a key in a profile file, "" for a missing section or key. Values are read as the profile
/// functions of Windows do: names without regard to case, blanks around names and values dropped, one pair of
/// quotes around a value removed, lines that begin with ";" are comments. A file is in code page 1252, or in
/// UTF-8 when it begins with that byte order mark.
std::string profileValue(std::string_view file, std::string_view section, std::string_view key);

/// The name of a file may hold "\" between its folders. An existing file that cannot be read counts as
/// missing and is reported to the diagnostics.
class ProfileIniFile final : public IniFile {
public:
  explicit ProfileIniFile(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}
  std::string read(std::string_view file, std::string_view section, std::string_view key) override;

private:
  Diagnostics& diagnostics_;
};

} // namespace qx
