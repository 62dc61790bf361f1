// Characters of UTF-8 texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qx::cli {

/// The number of bytes of the well-formed character at the front; 0 when there is none.
std::size_t utf8Length(std::string_view text);

/// The number of characters of a well-formed text.
std::size_t characterCount(std::string_view text);

/// The text with "a", "o", "u" and their capitals joined with a following combining diaeresis.
std::string composeUmlauts(std::string_view text);

/// The first line, cut to `width` characters and filled up with blanks to it. Control characters become
/// blanks.
std::string fitted(std::string_view text, std::size_t width);

} // namespace qx::cli
