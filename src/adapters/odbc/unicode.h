// UTF-8, as all of the component has it, and UTF-16, as the wide functions of ODBC have it.
#pragma once

#include <string>
#include <string_view>

namespace qx::odbc {

/// Raises `StatementError` for a text that is not UTF-8 or holds the character 0, which no server stores.
std::u16string toUtf16(std::string_view text);

/// Half a surrogate pair becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

} // namespace qx::odbc
