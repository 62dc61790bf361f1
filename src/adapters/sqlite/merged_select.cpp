#include "adapters/sqlite/merged_select.h"

#include "adapters/sqlite/dialect.h"
#include "adapters/sqlite/select_parts.h"
#include "model/text.h"

#include <algorithm>
#include <vector>

namespace qx::sqlite {
namespace {

constexpr std::string_view codeColumn = "JobType";

/// Removes a word, with the blanks before it, from the front.
bool take(std::string_view& text, std::string_view word) {
  text = trimBlanks(text);
  if (!equalCodes(text.substr(0, word.size()), word)) return false;
  text.remove_prefix(word.size());
  return true;
}

/// A number between quotes.
std::optional<std::string_view> takeCode(std::string_view& text) {
  if (!take(text, codeColumn) || !take(text, "=") || !take(text, "'")) return std::nullopt;
  const auto end = text.find_first_not_of("0123456789");
  if (end == 0 || end == std::string_view::npos || text[end] != '\'') return std::nullopt;
  const std::string_view code = text.substr(0, end);
  text.remove_prefix(end + 1);
  return code;
}

/// The codes of "JobType = 'a' Or JobType = 'b'", each once; empty for any other condition.
std::vector<std::string_view> codesOf(std::string_view condition) {
  std::vector<std::string_view> codes;
  do {
    const auto code = takeCode(condition);
    if (!code) return {};
    if (std::ranges::find(codes, *code) == codes.end()) codes.push_back(*code);
  } while (take(condition, "or"));
  return trimBlanks(condition).empty() ? codes : std::vector<std::string_view>();
}

/// The terms of a list, split at the commas outside parentheses and quotes.
std::vector<std::string_view> termsOf(std::string_view list) {
  std::vector<std::string_view> terms;
  int depth = 0;
  bool quotes = false;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < list.size(); ++at) {
    if (list[at] == '\'') quotes = !quotes;
    if (quotes) continue;
    if (list[at] == '(') ++depth;
    if (list[at] == ')') --depth;
    if (list[at] != ',' || depth != 0) continue;
    terms.push_back(trimBlanks(list.substr(begin, at - begin)));
    begin = at + 1;
  }
  terms.push_back(trimBlanks(list.substr(begin)));
  return terms;
}

/// The expression of the sort key when it names a computed column, else the key itself.
std::string_view expressionOf(std::string_view key, std::string_view list) {
  const std::string ending = " as " + std::string(key);
  for (const std::string_view term : termsOf(list))
    if (term.size() > ending.size() && equalCodes(term.substr(term.size() - ending.size()), ending))
      return trimBlanks(term.substr(0, term.size() - ending.size()));
  return key;
}

std::string_view sortKey(const SelectParts& parts) {
  std::string_view key = trimBlanks(parts.orderBy);
  if (parts.descending()) key = trimBlanks(key.substr(0, key.size() - std::string_view("desc").size()));
  return key;
}

} // namespace

std::optional<std::string> mergedSelect(std::string_view select, std::string_view limit) {
  const auto parts = splitSelect(select);
  if (!parts || parts->aggregate || parts->orderBy.empty()) return std::nullopt;
  const auto codes = codesOf(parts->where);
  if (codes.empty() || termsOf(parts->orderBy).size() != 1) return std::nullopt;

  const std::string key(expressionOf(sortKey(*parts), parts->list));
  const std::string table = quotedName(parts->table);
  const std::string direction = parts->descending() ? " DESC" : "";
  const auto ordered = [&](std::string_view first, std::string_view second) {
    return " ORDER BY " + std::string(first) + direction + ", " + std::string(second) + direction;
  };
  const std::string limited = " LIMIT " + std::string(limit);
  // Merges only keys and row numbers; the rows themselves are fetched afterwards.
  std::string merged;
  for (const std::string_view code : codes) {
    if (!merged.empty()) merged += " UNION ALL ";
    merged.append("SELECT * FROM (SELECT rowid AS merged_row, ").append(key).append(" AS merged_key FROM ");
    merged.append(table).append(" WHERE ").append(codeColumn).append(" = '").append(code).append("'");
    merged.append(ordered(key, "rowid")).append(limited).append(")");
  }
  merged += ordered("merged_key", "merged_row") + limited;
  return "SELECT " + std::string(parts->list) + " FROM (" + merged + ") CROSS JOIN " + table + " ON " +
         table + ".rowid = merged_row" + ordered("merged_key", "merged_row");
}

} // namespace qx::sqlite
