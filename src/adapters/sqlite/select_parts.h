// Splits the select statements of the component at their top level.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qx::sqlite {

/// The clauses of a select over one table. The views point into the statement that was split.
struct SelectParts {
  std::string_view list;    ///< between the keyword and From
  std::string_view table;   ///< without brackets or quotes
  std::string_view where;   ///< the condition without its keyword; empty without one
  std::string_view orderBy; ///< the sort terms without their keywords; empty without any
  bool aggregate = false;   ///< the list computes one row from many

  bool descending() const;
};

/// Null for anything but a plain select over a single table.
std::optional<SelectParts> splitSelect(std::string_view statement);

/// The position of a word in a statement, ignoring ASCII case; npos without it.
std::size_t findWord(std::string_view text, std::string_view word, std::size_t from = 0);

} // namespace qx::sqlite
