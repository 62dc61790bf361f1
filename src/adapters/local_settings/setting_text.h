// Encodes texts so that an INI file keeps them unchanged.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// The text with everything that the file format would change ("%", ";", "#", "=", quotes, brackets, "/",
/// backslash, control characters, blanks at either end) as "%" and two hexadecimal digits. Umlauts and inner
/// blanks stay readable.
std::string encodeSetting(std::string_view text);

/// Reverses `encodeSetting`. A "%" without two hexadecimal digits after it is literal.
std::string decodeSetting(std::string_view text);

} // namespace qx
