// The INI file in which options travel to another installation.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

struct FileSetting {
  std::string section;
  std::string key;
  std::string setting;
  std::int64_t line = 0; ///< in the file it was read from
};

/// One `key=value` a line below `[section]`. A value is everything behind the `=`; in it `%` and line breaks
/// are written as `%` and two hexadecimal digits. The settings of a section must follow each other.
void writeSettings(std::ostream& file, const std::vector<FileSetting>& settings);

/// Reads such a text; lines that are empty or begin with `;` or `#` are passed over. Raises `ProgramError`,
/// which names the line and ends with `nextStep`, for anything else and for a key that stands twice.
std::vector<FileSetting> readSettings(std::string_view text, const std::string& fileName,
                                      const std::string& nextStep);

} // namespace qx::cli
