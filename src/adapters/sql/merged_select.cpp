#include "adapters/sql/merged_select.h"

#include "adapters/sql/select_parts.h"
#include "adapters/sql/translation.h"
#include "model/text.h"

#include <algorithm>
#include <vector>

namespace qx::relational {
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

/// The expression of the sort key when it names a computed column, else the key itself.
std::string_view expressionOf(std::string_view key, std::string_view list) {
  for (const std::string_view term : listTerms(list))
    if (const NamedTerm named = splitTerm(term); equalCodes(named.name, key)) return named.expression;
  return key;
}

std::string_view sortKey(const SelectParts& parts) {
  std::string_view key = trimBlanks(parts.orderBy);
  if (parts.descending()) key = trimBlanks(key.substr(0, key.size() - std::string_view("desc").size()));
  return key;
}

} // namespace

std::optional<std::string> mergedSelect(std::string_view select, std::string_view limit,
                                        const Dialect& dialect) {
  const auto parts = splitSelect(select);
  if (!parts || parts->aggregate || parts->orderBy.empty()) return std::nullopt;
  const auto codes = codesOf(parts->where);
  if (codes.empty() || listTerms(parts->orderBy).size() != 1) return std::nullopt;

  const std::string key(expressionOf(sortKey(*parts), parts->list));
  const std::string table = quotedName(parts->table, dialect);
  const std::string rowKey(dialect.rowKey);
  const std::string direction = parts->descending() ? " DESC" : "";
  const auto ordered = [&](const std::string& first, const std::string& second) {
    return " ORDER BY " + sortTerms(first + direction, dialect) + ", " + second + direction;
  };
  const std::string rows(limit);
  // Merges only keys and row numbers; the rows themselves are fetched afterwards.
  std::string merged;
  for (const std::string_view code : codes) {
    if (!merged.empty()) merged += " UNION ALL ";
    std::string part = "SELECT ";
    part.append(rowKey).append(" AS merged_row, ").append(key).append(" AS merged_key FROM ").append(table);
    part.append(" WHERE ").append(codeColumn).append(" = '").append(code).append("'");
    part += ordered(key, rowKey);
    merged.append("SELECT * FROM (").append(limitedSelect(part, rows, dialect)).append(") AS part");
  }
  // What the number of rows stands in front of is one select.
  if (dialect.rowLimit == RowLimit::InFront) merged = "SELECT * FROM (" + merged + ") AS parts";
  merged = limitedSelect(merged + ordered("merged_key", "merged_row"), rows, dialect);
  return "SELECT " + std::string(parts->list) + " FROM (" + merged + ") AS merged " +
         std::string(dialect.drivenJoin) + " " + table + " ON " + table + "." + rowKey + " = merged_row" +
         ordered("merged_key", "merged_row");
}

} // namespace qx::relational
