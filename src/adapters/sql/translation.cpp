#include "adapters/sql/translation.h"

#include "adapters/sql/merged_select.h"
#include "adapters/sql/select_parts.h"
#include "model/text.h"

#include <algorithm>

namespace qx::relational {
namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = findWord(text, from); at != std::string::npos;
       at = findWord(text, from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// The fixed text with a parameter in place of every value. The quotes around text values are notation and
/// are dropped.
std::string withParameters(const Sql& statement, const Dialect& dialect) {
  std::string text;
  auto nextName = statement.names().begin();
  bool afterText = false;
  for (const SqlShape* shape : statement.shapes())
    for (const SqlPiece& piece : shape->pieces) {
      switch (piece.slot) {
      case SqlSlot::Fixed:
        text += afterText ? piece.text.substr(1) : piece.text;
        break;
      case SqlSlot::Text:
        text.pop_back();
        text += '?';
        break;
      case SqlSlot::Number:
        text += '?';
        break;
      case SqlSlot::Name:
        text += quotedName(*nextName++, dialect);
        break;
      }
      afterText = piece.slot == SqlSlot::Text;
    }
  return text;
}

/// Takes "Top 2000" out of "Select Top 2000 ..." and returns the number; empty without one.
std::string takeTop(std::string& text) {
  constexpr std::string_view top = "select top ";
  if (text.size() < top.size() || !equalCodes(std::string_view(text).substr(0, top.size()), top)) return {};
  const auto end = text.find_first_not_of("0123456789", top.size());
  std::string count = text.substr(top.size(), end - top.size());
  text.erase(6, end - 6);
  return count;
}

/// "Convert(DateTime, X, 104)" becomes the chronological expression of X.
void rewriteConvert(std::string& text, const Dialect& dialect) {
  constexpr std::string_view call = "convert(datetime,";
  constexpr std::string_view style = ", 104)";
  for (auto at = findWord(text, call); at != std::string::npos; at = findWord(text, call)) {
    const auto end = text.find(style, at);
    if (end == std::string::npos) return;
    const auto first = text.find_first_not_of(' ', at + call.size());
    text.replace(at, end + style.size() - at,
                 dialect.chronological(std::string_view(text).substr(first, end - first)));
  }
}

/// "Cast(X as int)" becomes the whole number at the beginning of X.
void rewriteCast(std::string& text, const Dialect& dialect) {
  constexpr std::string_view call = "cast(";
  constexpr std::string_view type = " as int)";
  if (dialect.wholeNumber == nullptr) return;
  for (auto at = findWord(text, call); at != std::string::npos; at = findWord(text, call, at + 1)) {
    const auto end = text.find(type, at);
    if (end == std::string::npos) return;
    const auto first = at + call.size();
    text.replace(at, end + type.size() - at,
                 dialect.wholeNumber(std::string_view(text).substr(first, end - first)));
  }
}

/// "[ImportKopf]" alone selects the whole table.
void rewriteTableCommand(std::string& text) {
  if (text.size() > 2 && text.front() == '[' && text.find(']') == text.size() - 1)
    text = "SELECT * FROM " + text;
}

/// Names in quotes or brackets as the database stores them.
void rewriteQuotedNames(std::string& text, const Dialect& dialect) {
  if (!dialect.lowersNames) return;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c != '\'' && c != '"' && c != '[') {
      ++at;
      continue;
    }
    const std::size_t end = skipQuoted(text, at);
    if (c == '\'') {
      at = end;
      continue;
    }
    std::string name = asciiLower(std::string_view(text).substr(at, end - at));
    name.front() = '"';
    if (c == '[' && name.back() == ']') name.back() = '"';
    text.replace(at, end - at, name);
    at += name.size();
  }
}

/// The types of a new table's columns, and its row key.
void rewriteTable(std::string& text, const Dialect& dialect) {
  constexpr std::string_view create = "create table ";
  if (!equalCodes(std::string_view(text).substr(0, create.size()), create)) return;
  std::string table;
  bool assigned = false;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    const std::size_t end = c == '\'' || c == '"' || c == '[' ? skipQuoted(text, at) : wordEnd(text, at);
    const std::string_view word = std::string_view(text).substr(at, std::max(end, at + 1) - at);
    const auto type =
        std::ranges::find_if(dialect.types, [&](auto each) { return equalCodes(each.from, word); });
    table += type == dialect.types.end() ? word : type->to;
    assigned = assigned || equalCodes(word, "assigned");
    at += word.size();
  }
  // A key that the database assigns identifies the rows as well.
  const auto open = table.find('(');
  if (!assigned && open != std::string::npos && findWord(table, "select ") == std::string::npos)
    table.insert(open + 1, dialect.rowKeyColumn);
  text = std::move(table);
}

/// The keys of an index that takes columns only, and the columns of its expressions beside them; only rows
/// without a null in a unique one.
std::string plainIndexTerms(std::string_view terms, bool unique) {
  constexpr std::string_view call = "Convert(DateTime, ";
  std::string keys;
  std::string beside;
  std::string condition;
  for (const std::string_view term : listTerms(terms)) {
    if (term.starts_with(call)) {
      beside.append(beside.empty() ? "" : ", ");
      beside.append(term.substr(call.size(), term.find(',', call.size()) - call.size()));
      continue;
    }
    keys.append(keys.empty() ? "" : ", ").append(term);
    condition.append(condition.empty() ? " WHERE " : " AND ").append(term).append(" IS NOT NULL");
  }
  std::string text = " (" + keys + ")";
  if (!beside.empty()) text.append(" INCLUDE (").append(beside).append(")");
  return unique ? text + condition : text;
}

/// The terms of a new index in the order in which statements sort.
void rewriteIndex(std::string& text, const Dialect& dialect) {
  const bool unique = findWord(text, "create unique index ") == 0;
  const auto open = text.find(" (");
  if ((!unique && findWord(text, "create index ") != 0) || open == std::string::npos) return;
  const auto close = text.rfind(')', findWord(text, "where ", open));
  const std::string terms = text.substr(open + 2, close - open - 2);
  if (dialect.plainIndexes)
    text.replace(open, close + 1 - open, plainIndexTerms(terms, unique));
  else
    text.replace(open + 2, terms.size(), sortTerms(terms, dialect));
}

/// A select with the hint that its rows are locked.
void rewriteLock(std::string& text, const Dialect& dialect) {
  constexpr std::string_view hint = " WITH (UPDLOCK)";
  const auto at = text.find(hint);
  if (at == std::string::npos || dialect.rowLimit == RowLimit::InFront) return;
  text.erase(at, hint.size());
  text += dialect.lockingRead;
}

/// "CREATE TEMPORARY TABLE name AS SELECT ...".
void rewriteTemporaryTable(std::string& text, const Dialect& dialect) {
  constexpr std::string_view create = "CREATE TEMPORARY TABLE ";
  constexpr std::string_view as = " AS ";
  if (!dialect.selectsInto || !text.starts_with(create)) return;
  const auto end = text.find(as);
  const std::string table = text.substr(create.size(), end - create.size());
  text.erase(0, end + as.size());
  text.insert(text.find(" FROM "), " INTO " + table);
}

} // namespace

std::string quotedName(std::string_view identifier, const Dialect& dialect) {
  std::string text(1, dialect.quotes.front());
  for (const char c : identifier) {
    if (c == dialect.quotes.back()) text += c;
    text += dialect.lowersNames ? asciiLower(c) : c;
  }
  return text + dialect.quotes.back();
}

std::string insertText(std::string_view table, std::string_view names, std::string_view values,
                       std::string_view key, const Dialect& dialect) {
  std::string text = "INSERT INTO " + quotedName(table, dialect);
  if (!names.empty()) text.append(" (").append(names).append(")");
  if (!dialect.output.empty()) text.append(dialect.output).append(key);
  if (names.empty())
    text += " DEFAULT VALUES";
  else
    text.append(" VALUES (").append(values).append(")");
  if (!dialect.returning.empty()) text.append(dialect.returning).append(key);
  return text;
}

std::string limitedSelect(std::string_view select, std::string_view rows, const Dialect& dialect) {
  constexpr std::string_view verb = "SELECT";
  std::string text(select);
  if (dialect.rowLimit == RowLimit::InFront) return text.insert(verb.size(), " TOP " + std::string(rows));
  return text.append(" LIMIT ").append(rows);
}

std::string orderClause(const SelectParts& parts, std::string_view rowKey, const Dialect& dialect) {
  std::string terms = sortTerms(parts.orderBy, dialect);
  if (!rowKey.empty()) {
    terms.append(terms.empty() ? "" : ", ")
        .append(quotedName(parts.table, dialect))
        .append(".")
        .append(rowKey);
    if (parts.descending()) terms += " DESC";
  }
  return terms.empty() ? terms : " ORDER BY " + terms;
}

std::string sortTerms(std::string_view orderBy, const Dialect& dialect) {
  if (dialect.nullsFirst.empty() || orderBy.empty()) return std::string(orderBy);
  constexpr std::string_view falling = " desc";
  std::string sorted;
  for (const std::string_view term : listTerms(orderBy)) {
    const bool falls =
        term.size() > falling.size() && equalCodes(term.substr(term.size() - falling.size()), falling);
    sorted.append(sorted.empty() ? "" : ", ").append(term);
    sorted += falls ? dialect.nullsLast : dialect.nullsFirst;
  }
  return sorted;
}

std::string translate(const Sql& statement, const Dialect& dialect) {
  std::string text = withParameters(statement, dialect);
  rewriteTableCommand(text);
  rewriteQuotedNames(text, dialect);
  rewriteTable(text, dialect);
  rewriteIndex(text, dialect);
  const std::string limit = takeTop(text);
  rewriteConvert(text, dialect);
  rewriteCast(text, dialect);
  rewriteLock(text, dialect);
  rewriteTemporaryTable(text, dialect);
  for (const Rewriting& each : dialect.rewritings) replaceAll(text, each.from, each.to);
  replaceAll(text, "order by eingangsdatum", "Order by " + dialect.chronological("Eingangsdatum"));
  if (limit.empty()) return text;
  return mergedSelect(text, limit, dialect).value_or(limitedSelect(text, limit, dialect));
}

} // namespace qx::relational
