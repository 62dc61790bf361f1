// Typed texts, and texts in the columns of a terminal.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace qx::cli {

/// The text with letters and their combining marks joined (NFC), as the tables spell them. A malformed text
/// is returned unchanged.
std::string composed(std::string_view text);

/// The first line, cut or padded with blanks to `width` columns. A wide character takes two columns, a
/// combining mark none; a control character or malformed byte becomes a blank.
std::string fitted(std::string_view text, std::size_t width);

struct Column {
  std::string_view text;
  std::size_t width;
};

/// The texts fitted into their columns, two blanks apart, without trailing blanks.
std::string tableLine(std::initializer_list<Column> columns);

} // namespace qx::cli
