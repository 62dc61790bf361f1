// Texts in a form that an INI file keeps unchanged.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// The text with everything that the file format would change ("%", ";", "#", "=", quotes, brackets, "/",
/// backslash, control characters, blanks at either end) as "%" and two hexadecimal digits. Umlauts and inner
/// blanks stay readable.
std::string encodeSetting(std::string_view text);

/// The text before `encodeSetting`. A "%" that no two hexadecimal digits follow stands for itself.
std::string decodeSetting(std::string_view text);

} // namespace qx
