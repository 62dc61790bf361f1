// Settings in the text of an INI file.
#pragma once

#include <string>
#include <string_view>

namespace qx {

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
