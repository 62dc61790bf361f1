// Finds entries in the text of an INI file, and keeps the user's settings in one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// The text with everything that the file format would change ("%", ";", "#", "=", quotes, brackets, "/",
/// backslash, control characters, blanks at either end) as "%" and two hexadecimal digits. Umlauts and inner
/// blanks stay readable.
std::string encodeSetting(std::string_view text);

/// Reverses `encodeSetting`. A "%" without two hexadecimal digits after it is literal.
std::string decodeSetting(std::string_view text);

/// The differences between the two kinds of files.
struct IniRules {
  std::string_view commentMarks;                        ///< a line that begins with one of them is a comment
  bool (*sameName)(std::string_view, std::string_view); ///< of sections and keys
  bool bareKeys;                                        ///< a line without "=" is a key without a value
};

struct IniEntry {
  std::optional<std::string_view> line; ///< value of the key, without outer blanks; null when missing
  std::string_view value;               ///< without its outer blanks
  std::size_t sectionEnd = 0; ///< offset after the last entry of the section; 0 without such a section
};

/// The first entry of the key counts, as does the first section when there is none. A line that begins with
/// "[" ends the section before it; without "]" it opens none. A UTF-8 byte order mark is skipped. The views
/// point into `content`.
IniEntry findIniEntry(std::string_view content, std::string_view section, std::string_view key,
                      const IniRules& rules);

/// One INI section "application/section" per pair of them. Names ignore ASCII case. Both raise
/// `std::runtime_error` for content that is not text.
///
/// The value of a key, "" when it is missing.
std::string settingIn(std::string_view content, std::string_view application, std::string_view section,
                      std::string_view key);

/// The text with the key's value set and everything else unchanged.
std::string withSetting(std::string_view content, std::string_view application, std::string_view section,
                        std::string_view key, std::string_view value);

} // namespace qx
