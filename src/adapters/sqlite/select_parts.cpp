#include "adapters/sqlite/select_parts.h"

#include <algorithm>
#include <array>

namespace qx::sqlite {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool isWordCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
         byte == '_' || byte >= 0x80;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \r\n\t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \r\n\t") - first + 1);
}

/// The end of the quoted run that begins at `at`.
std::size_t skipQuoted(std::string_view text, std::size_t at) {
  const char open = text[at];
  const char close = open == '[' ? ']' : open;
  const auto end = text.find(close, at + 1);
  return end == std::string_view::npos ? text.size() : end + 1;
}

struct Keywords {
  std::size_t from = std::string_view::npos;
  std::size_t where = std::string_view::npos;
  std::size_t order = std::string_view::npos;
  bool compound = false;
};

/// The end of the word that begins at `at`.
std::size_t wordEnd(std::string_view text, std::size_t at) {
  while (at < text.size() && isWordCharacter(text[at])) ++at;
  return at;
}

void noteKeyword(Keywords& found, std::string_view word, std::size_t at) {
  if (sameWord(word, "from") && found.from == std::string_view::npos) found.from = at;
  if (sameWord(word, "where") && found.where == std::string_view::npos) found.where = at;
  if (sameWord(word, "order")) found.order = at;
  constexpr std::array<std::string_view, 6> compoundWords{"group", "union", "having",
                                                          "limit", "join",  "distinct"};
  if (std::ranges::any_of(compoundWords, [&](auto other) { return sameWord(word, other); }))
    found.compound = true;
}

/// Finds the clause keywords outside quotes, brackets and parentheses.
Keywords findKeywords(std::string_view text) {
  Keywords found;
  int depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c == '\'' || c == '"' || c == '[') {
      at = skipQuoted(text, at);
      continue;
    }
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (depth != 0 || !isWordCharacter(c)) {
      ++at;
      continue;
    }
    const std::size_t end = wordEnd(text, at);
    noteKeyword(found, text.substr(at, end - at), at);
    at = end;
  }
  return found;
}

std::string_view unquoted(std::string_view name) {
  if (name.size() >= 2 && (name.front() == '[' || name.front() == '"'))
    return name.substr(1, name.size() - 2);
  return name;
}

bool isIdentifier(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, isWordCharacter);
}

bool hasAggregate(std::string_view list) {
  return std::ranges::any_of(std::array<std::string_view, 5>{"sum(", "count(", "min(", "max(", "exists("},
                             [&](auto call) { return findWord(list, call) != std::string_view::npos; });
}

} // namespace

bool sameWord(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return lower(x) == lower(y); });
}

std::size_t findWord(std::string_view text, std::string_view word, std::size_t from) {
  for (std::size_t at = from; at + word.size() <= text.size(); ++at) {
    const bool starts = at == 0 || !isWordCharacter(word.front()) || !isWordCharacter(text[at - 1]);
    if (starts && sameWord(text.substr(at, word.size()), word)) return at;
  }
  return std::string_view::npos;
}

bool SelectParts::descending() const {
  const auto last = trimmed(orderBy);
  return last.size() > 5 && sameWord(last.substr(last.size() - 5), " desc");
}

std::optional<SelectParts> splitSelect(std::string_view statement) {
  statement = trimmed(statement);
  constexpr std::size_t selectLength = 6;
  if (statement.size() < selectLength || !sameWord(statement.substr(0, selectLength), "select"))
    return std::nullopt;
  const Keywords at = findKeywords(statement);
  if (at.compound || at.from == std::string_view::npos) return std::nullopt;
  const std::size_t orderAt = std::min(at.order, statement.size());
  const std::size_t whereAt = std::min(at.where, orderAt);

  SelectParts parts;
  parts.list = trimmed(statement.substr(selectLength, at.from - selectLength));
  parts.table = unquoted(trimmed(statement.substr(at.from + 4, whereAt - at.from - 4)));
  if (!isIdentifier(parts.table)) return std::nullopt;
  if (at.where < orderAt) parts.where = trimmed(statement.substr(at.where + 5, orderAt - at.where - 5));
  if (at.order != std::string_view::npos) {
    std::string_view terms = trimmed(statement.substr(at.order + 5));
    if (terms.size() < 2 || !sameWord(terms.substr(0, 2), "by")) return std::nullopt;
    parts.orderBy = trimmed(terms.substr(2));
  }
  parts.aggregate = hasAggregate(parts.list);
  return parts;
}

} // namespace qx::sqlite
