#include "adapters/sql/select_parts.h"

#include "model/text.h"

#include <algorithm>
#include <array>

namespace qx::relational {
namespace {

bool isWordCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
         byte == '_' || byte >= 0x80;
}

struct Keywords {
  std::size_t from = std::string_view::npos;
  std::size_t where = std::string_view::npos;
  std::size_t order = std::string_view::npos;
  bool compound = false;
};

void noteKeyword(Keywords& found, std::string_view word, std::size_t at) {
  if (equalCodes(word, "from") && found.from == std::string_view::npos) found.from = at;
  if (equalCodes(word, "where") && found.where == std::string_view::npos) found.where = at;
  if (equalCodes(word, "order")) found.order = at;
  constexpr std::array<std::string_view, 8> compoundWords{"group", "union",    "having", "limit",
                                                          "join",  "distinct", "top",    "offset"};
  if (std::ranges::any_of(compoundWords, [&](auto other) { return equalCodes(word, other); }))
    found.compound = true;
}

/// Finds the clause keywords outside quotes, brackets and parentheses.
Keywords findKeywords(std::string_view text) {
  Keywords found;
  forEachWord(text, [&](std::string_view word, std::size_t at) { noteKeyword(found, word, at); });
  return found;
}

std::string_view unquoted(std::string_view name) {
  const bool quoted = (name.starts_with('[') && name.ends_with(']')) ||
                      (name.size() >= 2 && name.starts_with('"') && name.ends_with('"'));
  return quoted ? name.substr(1, name.size() - 2) : name;
}

/// The text after the keyword with which it begins; null without that keyword or when nothing follows.
std::optional<std::string_view> clause(std::string_view text, std::string_view keyword) {
  const std::size_t end = wordEnd(text, 0);
  const std::string_view content = trimWhitespace(text.substr(end));
  if (!equalCodes(text.substr(0, end), keyword) || content.empty()) return std::nullopt;
  return content;
}

bool hasAggregate(std::string_view list) {
  return std::ranges::any_of(std::array<std::string_view, 5>{"sum(", "count(", "min(", "max(", "exists("},
                             [&](auto call) { return findWord(list, call) != std::string_view::npos; });
}

} // namespace

std::size_t wordEnd(std::string_view text, std::size_t at) {
  while (at < text.size() && isWordCharacter(text[at])) ++at;
  return at;
}

std::size_t skipQuoted(std::string_view text, std::size_t at) {
  const char open = text[at];
  const char close = open == '[' ? ']' : open;
  const auto end = text.find(close, at + 1);
  return end == std::string_view::npos ? text.size() : end + 1;
}

bool isIdentifier(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, isWordCharacter);
}

std::size_t findWord(std::string_view text, std::string_view word, std::size_t from) {
  for (std::size_t at = from; at + word.size() <= text.size(); ++at) {
    const bool starts = at == 0 || !isWordCharacter(word.front()) || !isWordCharacter(text[at - 1]);
    if (starts && equalCodes(text.substr(at, word.size()), word)) return at;
  }
  return std::string_view::npos;
}

std::vector<std::string_view> listTerms(std::string_view list) {
  std::vector<std::string_view> terms;
  int depth = 0;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < list.size();) {
    const char c = list[at];
    if (c == '\'' || c == '"' || c == '[') {
      at = skipQuoted(list, at);
      continue;
    }
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (c == ',' && depth == 0) {
      terms.push_back(trimBlanks(list.substr(begin, at - begin)));
      begin = at + 1;
    }
    ++at;
  }
  terms.push_back(trimBlanks(list.substr(begin)));
  return terms;
}

NamedTerm splitTerm(std::string_view term) {
  constexpr std::string_view as = " as ";
  const auto last = term.find_last_of(' ');
  if (last == std::string_view::npos || last + 1 < as.size()) return {term, {}};
  const auto begin = last + 1 - as.size();
  const std::string_view name = term.substr(last + 1);
  if (!equalCodes(term.substr(begin, as.size()), as) || !isIdentifier(name)) return {term, {}};
  return {trimBlanks(term.substr(0, begin)), name};
}

bool listsWholeRows(std::string_view statement) {
  statement = trimWhitespace(statement);
  constexpr std::string_view select = "select";
  if (!equalCodes(statement.substr(0, select.size()), select)) return false;
  const std::size_t from = std::min(findKeywords(statement).from, statement.size());
  return std::ranges::any_of(listTerms(statement.substr(select.size(), from - select.size())),
                             [](std::string_view term) { return term == "*" || term.ends_with(".*"); });
}

bool SelectParts::descending() const {
  const auto last = trimWhitespace(orderBy);
  return last.size() > 5 && equalCodes(last.substr(last.size() - 5), " desc");
}

std::optional<SelectParts> splitSelect(std::string_view statement) {
  statement = trimWhitespace(statement);
  const Keywords at = findKeywords(statement);
  const std::size_t orderAt = std::min(at.order, statement.size());
  const std::size_t whereAt = std::min(at.where, orderAt);
  const bool inOrder = at.from < whereAt && (at.where == std::string_view::npos || at.where == whereAt);
  if (at.compound || !inOrder) return std::nullopt;

  const auto list = clause(statement.substr(0, at.from), "select");
  const auto table = clause(statement.substr(at.from, whereAt - at.from), "from");
  if (!list || !table) return std::nullopt;
  SelectParts parts;
  parts.list = *list;
  parts.table = unquoted(*table);
  if (!isIdentifier(parts.table)) return std::nullopt;
  if (whereAt < orderAt) {
    const auto condition = clause(statement.substr(whereAt, orderAt - whereAt), "where");
    if (!condition) return std::nullopt;
    parts.where = *condition;
  }
  if (orderAt < statement.size()) {
    const auto terms = clause(statement.substr(orderAt), "order");
    const auto keys = terms ? clause(*terms, "by") : std::nullopt;
    if (!keys) return std::nullopt;
    parts.orderBy = *keys;
  }
  parts.aggregate = hasAggregate(parts.list);
  return parts;
}

} // namespace qx::relational
