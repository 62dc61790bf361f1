// Splits the select statements of the component at their top level.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::relational {

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

/// The terms of a list without the blanks around them, split at the commas outside parentheses and quotes.
std::vector<std::string_view> listTerms(std::string_view list);

/// The expression of a term, and its own name when it has one ("x As y").
struct NamedTerm {
  std::string_view expression;
  std::string_view name;
};
NamedTerm splitTerm(std::string_view term);

/// Whether a select lists all columns of a table by `*`.
bool listsWholeRows(std::string_view statement);

/// Whether it is the plain name of a column.
bool isIdentifier(std::string_view name);

/// The end of the quoted or bracketed run that begins at `at`.
std::size_t skipQuoted(std::string_view text, std::size_t at);

/// The end of the word that begins at `at`; `at` itself when none does.
std::size_t wordEnd(std::string_view text, std::size_t at);

/// Calls `visit` with each word and its place outside quotes, brackets and parentheses.
template <class Visit>
void forEachWord(std::string_view text, Visit&& visit) {
  int depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c == '\'' || c == '"' || c == '[') {
      at = skipQuoted(text, at);
      continue;
    }
    if (c == '(') ++depth;
    if (c == ')') --depth;
    const std::size_t end = wordEnd(text, at);
    if (end > at && depth == 0) visit(text.substr(at, end - at), at);
    at = end > at ? end : at + 1;
  }
}

/// The position of a word in a statement, ignoring ASCII case; npos without it.
std::size_t findWord(std::string_view text, std::string_view word, std::size_t from = 0);

} // namespace qx::relational
