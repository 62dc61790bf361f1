#include "adapters/sql/statement_pattern.h"

#include "adapters/sql/select_parts.h"
#include "model/text.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace qx::relational {
namespace {

std::string_view withoutParentheses(std::string_view text) {
  text = trimWhitespace(text);
  while (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
    int depth = 0;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
      if (text[at] == '(') ++depth;
      if (text[at] == ')' && --depth == 0) break;
    }
    if (at + 1 != text.size()) break;
    text = trimWhitespace(text.substr(1, text.size() - 2));
  }
  return text;
}

/// The conditions that are joined by "and"; the whole text when an "or" joins them.
std::vector<std::string_view> conjuncts(std::string_view where) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  bool alternative = false;
  forEachWord(where, [&](std::string_view word, std::size_t at) {
    if (equalCodes(word, "or")) alternative = true;
    if (!equalCodes(word, "and")) return;
    parts.push_back(trimWhitespace(where.substr(begin, at - begin)));
    begin = at + word.size();
  });
  if (alternative) return {where};
  parts.push_back(trimWhitespace(where.substr(begin)));
  return parts;
}

/// The name of a column, which may be quoted or follow the name of its table; empty for anything else.
std::string_view columnOf(std::string_view term) {
  term = trimWhitespace(term);
  if (const auto dot = term.rfind('.'); dot != std::string_view::npos && isIdentifier(term.substr(0, dot)))
    term = term.substr(dot + 1);
  if (term.size() > 2 && (term.front() == '"' || term.front() == '[')) term = term.substr(1, term.size() - 2);
  return isIdentifier(term) ? term : std::string_view();
}

bool isNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// Reads terms from the left and counts the parameters on the way.
class TermReader {
public:
  explicit TermReader(std::size_t firstParameter = 0) : parameter_(firstParameter) {}

  ColumnTerm read(std::string_view column, std::string_view expression) {
    ColumnTerm term;
    term.column = std::string(column);
    term.columnHash = foldedNameHash(column);
    expression = trimWhitespace(expression);
    if (expression == "?") {
      term.source = ColumnTerm::Source::Parameter;
      term.parameter = parameter_;
    } else if (isNumber(expression) || isPlainText(expression)) {
      term.source = ColumnTerm::Source::Literal;
      term.literal =
          Value(expression.front() == '\'' ? expression.substr(1, expression.size() - 2) : expression);
    }
    skip(expression);
    return term;
  }
  void skip(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
      if (text[at] == '\'' || text[at] == '"' || text[at] == '[') {
        at = skipQuoted(text, at);
        continue;
      }
      if (text[at] == '?') ++parameter_;
      ++at;
    }
  }
  std::size_t parameter() const { return parameter_; }

private:
  static bool isPlainText(std::string_view text) {
    return text.size() >= 2 && text.front() == '\'' && text.find('\'', 1) == text.size() - 1;
  }

  std::size_t parameter_;
};

/// Adds the comparisons among the conditions; false when there are others.
bool readEqualities(std::string_view where, TermReader& reader, std::vector<ColumnTerm>& equalities) {
  bool all = true;
  for (const std::string_view conjunct : conjuncts(where)) {
    const std::string_view condition = withoutParentheses(conjunct);
    const auto sign = condition.find('=');
    const std::string_view column =
        sign == std::string_view::npos ? std::string_view() : columnOf(condition.substr(0, sign));
    if (column.empty()) {
      reader.skip(condition);
      all = false;
      continue;
    }
    ColumnTerm term = reader.read(column, condition.substr(sign + 1));
    if (term.source == ColumnTerm::Source::Unknown)
      all = false;
    else
      equalities.push_back(std::move(term));
  }
  return all;
}

/// The word at the beginning and what follows it.
std::pair<std::string_view, std::string_view> firstWord(std::string_view text) {
  text = trimWhitespace(text);
  std::size_t end = wordEnd(text, 0);
  if (end == 0 && !text.empty() && (text.front() == '"' || text.front() == '[')) end = skipQuoted(text, 0);
  return {text.substr(0, end), trimWhitespace(text.substr(end))};
}

std::string tableName(std::string_view word) { return asciiLower(columnOf(word)); }

/// The text before the word, and behind it; all of it and nothing without the word.
std::pair<std::string_view, std::string_view> splitAt(std::string_view text, std::string_view wanted) {
  std::size_t found = std::string_view::npos;
  forEachWord(text, [&](std::string_view word, std::size_t at) {
    if (found == std::string_view::npos && equalCodes(word, wanted)) found = at;
  });
  if (found == std::string_view::npos) return {text, {}};
  return {text.substr(0, found), trimWhitespace(text.substr(found + wanted.size()))};
}

std::optional<WritePattern> updateOf(std::string_view text) {
  WritePattern pattern;
  pattern.kind = WritePattern::Kind::Update;
  const auto [table, set] = firstWord(text);
  pattern.table = tableName(table);
  const auto [keyword, rest] = firstWord(set);
  if (pattern.table.empty() || !equalCodes(keyword, "set")) return std::nullopt;
  const auto [assignments, where] = splitAt(rest, "where");
  TermReader reader;
  for (const std::string_view assignment : listTerms(assignments)) {
    const auto sign = assignment.find('=');
    if (sign == std::string_view::npos) return std::nullopt;
    const std::string_view column = columnOf(assignment.substr(0, sign));
    if (column.empty()) return std::nullopt;
    pattern.assigned.push_back(reader.read(column, assignment.substr(sign + 1)));
  }
  if (!where.empty()) pattern.furtherConditions = !readEqualities(where, reader, pattern.equalities);
  return pattern;
}

std::optional<WritePattern> deleteOf(std::string_view text) {
  WritePattern pattern;
  pattern.kind = WritePattern::Kind::Delete;
  const auto [table, rest] = firstWord(text);
  pattern.table = tableName(table);
  if (pattern.table.empty()) return std::nullopt;
  TermReader reader;
  if (const std::string_view where = splitAt(rest, "where").second; !where.empty())
    readEqualities(where, reader, pattern.equalities);
  return pattern;
}

std::optional<WritePattern> insertOf(std::string_view text) {
  WritePattern pattern;
  const auto [table, rest] = firstWord(text);
  pattern.table = tableName(table);
  if (pattern.table.empty() || !rest.starts_with('(')) return std::nullopt;
  const auto end = rest.find(')');
  if (end == std::string_view::npos) return std::nullopt;
  const auto columns = listTerms(rest.substr(1, end - 1));
  auto [keyword, terms] = firstWord(rest.substr(end + 1));
  if (equalCodes(keyword, "values")) {
    // What follows the row may change another one.
    if (splitAt(terms, "on").second.empty())
      terms = withoutParentheses(terms);
    else
      return std::nullopt;
  } else if (equalCodes(keyword, "select")) {
    terms = splitAt(splitAt(terms, "from").first, "where").first;
  } else {
    return std::nullopt;
  }
  const auto values = listTerms(terms);
  if (values.size() != columns.size()) return std::nullopt;
  TermReader reader;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string_view column = columnOf(columns[i]);
    if (column.empty()) return std::nullopt;
    pattern.assigned.push_back(reader.read(column, values[i]));
  }
  return pattern;
}

std::optional<SetStatement> setOfUpdates(std::string_view text) {
  const auto [assignments, where] = splitAt(text, "where");
  const auto pattern = updateOf(text);
  const auto unknown = [](const ColumnTerm& term) { return term.source == ColumnTerm::Source::Unknown; };
  if (!pattern || where.empty() || std::ranges::any_of(pattern->assigned, unknown)) return std::nullopt;
  SetStatement set;
  TermReader reader;
  reader.skip(assignments);
  std::vector<ColumnTerm> conditions;
  if (!readEqualities(where, reader, conditions)) return std::nullopt;
  for (const ColumnTerm& term : conditions)
    if (term.source == ColumnTerm::Source::Parameter) set.keys.push_back(term.parameter);
  std::size_t next = 0;
  set.head = "UPDATE " + withValuesOfTable(assignments, next) + " FROM ";
  set.tail = " WHERE " + withValuesOfTable(where, next);
  return set;
}

/// The parts of "INSERT INTO table (columns) VALUES (terms)" or "... SELECT terms WHERE where", and what
/// follows the word ON.
struct InsertParts {
  std::string_view head; ///< up to the columns
  std::vector<std::string_view> columns;
  std::string_view terms, where, conflict;
};

std::optional<InsertParts> insertParts(std::string_view statement) {
  InsertParts parts;
  std::string_view into;
  std::tie(into, parts.conflict) = splitAt(statement, "on");
  const auto behind = firstWord(firstWord(firstWord(into).second).second).second;
  const auto end = behind.find(')');
  if (!behind.starts_with('(') || end == std::string_view::npos) return std::nullopt;
  parts.head = into.substr(0, static_cast<std::size_t>(behind.data() - into.data()) + end + 1);
  parts.columns = listTerms(behind.substr(1, end - 1));
  const auto [keyword, terms] = firstWord(behind.substr(end + 1));
  if (equalCodes(keyword, "values"))
    parts.terms = withoutParentheses(terms);
  else if (equalCodes(keyword, "select") && splitAt(terms, "from").second.empty())
    std::tie(parts.terms, parts.where) = splitAt(terms, "where");
  // What one row finds depends on the rows before.
  if (parts.terms.empty() || parts.terms.find('(') != std::string_view::npos) return std::nullopt;
  return parts;
}

std::optional<SetStatement> setOfInserts(std::string_view statement) {
  const auto parts = insertParts(statement);
  if (!parts) return std::nullopt;
  SetStatement set;
  std::size_t next = 0;
  set.head = std::string(parts->head) + " SELECT " + withValuesOfTable(parts->terms, next) + " FROM ";
  set.tail = " WHERE " +
             (parts->where.empty() ? std::string("true") : withValuesOfTable(parts->where, next)) +
             " ORDER BY qx_n";
  // Without a condition each set adds a row. With one, two of the same row would both find that it is
  // missing.
  std::vector<std::string_view> keyColumns;
  if (!parts->where.empty()) keyColumns = parts->columns;
  if (!parts->conflict.empty()) {
    const auto open = parts->conflict.find('(');
    const auto close = parts->conflict.find(')');
    if (open == std::string_view::npos || close == std::string_view::npos) return std::nullopt;
    set.tail += " ON " + std::string(parts->conflict);
    keyColumns = listTerms(parts->conflict.substr(open + 1, close - open - 1));
  }
  TermReader reader;
  const auto values = listTerms(parts->terms);
  for (std::size_t i = 0; i < std::min(parts->columns.size(), values.size()); ++i) {
    const ColumnTerm term = reader.read(columnOf(parts->columns[i]), values[i]);
    const bool isKey = std::ranges::any_of(
        keyColumns, [&](std::string_view column) { return equalCodes(columnOf(column), term.column); });
    if (isKey && term.source == ColumnTerm::Source::Parameter) set.keys.push_back(term.parameter);
  }
  return set;
}

bool looksNumeric(std::string_view text) {
  constexpr std::string_view characters = "0123456789.+-eE";
  return asciiLower(text.front()) != 'e' &&
         std::ranges::all_of(text, [&](char c) { return characters.find(c) != std::string_view::npos; });
}

} // namespace

const Value* ColumnTerm::value(std::span<const Value> parameters) const {
  switch (source) {
  case Source::Parameter:
    return parameter < parameters.size() ? &parameters[parameter] : nullptr;
  case Source::Literal:
    return &literal;
  case Source::Unknown:
    break;
  }
  return nullptr;
}

ReadPattern ReadPattern::of(std::string_view table, std::string_view where) {
  ReadPattern pattern;
  pattern.table = asciiLower(table);
  TermReader reader;
  if (!where.empty()) pattern.furtherConditions = !readEqualities(where, reader, pattern.equalities);
  return pattern;
}

std::optional<WritePattern> WritePattern::of(std::string_view statement) {
  const auto [verb, rest] = firstWord(statement);
  const auto [second, behind] = firstWord(rest);
  if (equalCodes(verb, "update")) return updateOf(rest);
  if (equalCodes(verb, "delete") && equalCodes(second, "from")) return deleteOf(behind);
  if (equalCodes(verb, "insert") && equalCodes(second, "into")) return insertOf(behind);
  return std::nullopt;
}

std::optional<std::string> comparisonKey(const Value& value) {
  if (value.isNull()) return std::nullopt;
  std::string text = value.kind() == ValueKind::Text ? std::string() : value.text();
  const std::string_view written = value.kind() == ValueKind::Text ? value.textView() : text;
  // Collations differ in what they do beyond these; blanks at the ends and signs count differently too.
  constexpr char firstPrintable = '!';
  constexpr char lastPrintable = '~';
  if (written.empty() ||
      std::ranges::any_of(written, [](char c) { return c < firstPrintable || c > lastPrintable; }))
    return std::nullopt;
  if (looksNumeric(written)) {
    if (!isNumber(written)) return std::nullopt;
    const auto first = std::min(written.find_first_not_of('0'), written.size() - 1);
    return std::string(written.substr(first));
  }
  return asciiLower(written);
}

std::string withValuesOfTable(std::string_view text, std::size_t& next) {
  std::string changed;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    const std::size_t end = c == '\'' || c == '"' || c == '[' ? skipQuoted(text, at) : at + 1;
    if (c == '?')
      changed += "qx.qx_" + std::to_string(++next);
    else
      changed += text.substr(at, end - at);
    at = end;
  }
  return changed;
}

std::string valuesTable(std::size_t sets, std::span<const std::string> types) {
  // The first row tells the types.
  std::string first;
  std::string other;
  std::string names = "qx_n";
  for (std::size_t i = 0; i < types.size(); ++i) {
    first += ", CAST(? AS " + types[i] + ")";
    other += ", ?";
    names += ", qx_" + std::to_string(i + 1);
  }
  std::string text = "(VALUES ";
  for (std::size_t i = 0; i < sets; ++i)
    text.append(i == 0 ? "(" : ", (").append(std::to_string(i)).append(i == 0 ? first : other).append(")");
  return text + ") AS qx (" + names + ")";
}

std::string SetStatement::text(std::size_t sets, std::span<const std::string> types) const {
  return head + valuesTable(sets, types) + tail;
}

std::optional<SetStatement> SetStatement::of(std::string_view statement) {
  const auto [verb, rest] = firstWord(statement);
  if (equalCodes(verb, "update")) return setOfUpdates(rest);
  if (equalCodes(verb, "insert")) return setOfInserts(statement);
  return std::nullopt;
}

bool mayEqual(const Value& first, const Value& second) {
  if (first.isNull() || second.isNull()) return false;
  const auto left = comparisonKey(first);
  if (!left) return true;
  const auto right = comparisonKey(second);
  return !right || *left == *right;
}

} // namespace qx::relational
