// Settings in the text of an INI file.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// One INI section "application/section" per pair of them. Names are found without regard to ASCII case.
/// Both raise `std::runtime_error` for what is no text.
///
/// The value of a key, "" when it is not there.
std::string settingIn(std::string_view content, std::string_view application, std::string_view section,
                      std::string_view key);

/// The text with the key's value set. Everything else stays as it is.
std::string withSetting(std::string_view content, std::string_view application, std::string_view section,
                        std::string_view key, std::string_view value);

} // namespace qx
