// Typed texts, and texts in the columns of a terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qx::cli {

/// The text with letters and their combining marks joined (NFC), as the tables spell them. A malformed text
/// is returned unchanged.
std::string composed(std::string_view text);

/// What becomes of a text that is wider than its column.
enum class Fitting : std::uint8_t {
  Cut,  ///< it ends with an ellipsis
  Ends, ///< an ellipsis stands between its beginning and its end
  Whole ///< it stays as it is
};

/// The first line, fitted and padded with blanks to `width` columns. A wide character takes two columns, a
/// combining mark none; a control character or malformed byte becomes a blank.
std::string fitted(std::string_view text, std::size_t width, Fitting fitting = Fitting::Cut);

/// "24.11.2026 06:00:01" of a time stamp; every other text as it is.
std::string momentText(std::string_view stamp);

} // namespace qx::cli
