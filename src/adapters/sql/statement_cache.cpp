#include "adapters/sql/statement_cache.h"

#include "adapters/sql/select_parts.h"
#include "adapters/sql/translation.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
#include <bit>

namespace qx::relational {
namespace {

std::string whereClause(const SelectParts& parts) {
  return parts.where.empty() ? std::string() : " WHERE " + std::string(parts.where);
}

/// The layout of a select over one table with `hidden` columns before its own.
ResultLayout layoutOf(const SelectParts& parts, int hidden) {
  ResultLayout layout{hidden, false, {}};
  for (const std::string_view term : listTerms(parts.list)) {
    layout.wholeRows = layout.wholeRows || term == "*";
    if (const NamedTerm named = splitTerm(term); !named.name.empty())
      layout.computed.emplace_back(named.name);
  }
  return layout;
}

/// All columns of the rows of a table, as they are found.
bool readsWholeRows(const RowQuery& query) {
  return query.pattern && query.source.layout.wholeRows && query.source.layout.computed.empty() &&
         !query.sorted && !query.pattern->furtherConditions && !query.pattern->equalities.empty();
}

/// Whether two statements read the same rows with the same values for their parameters.
bool sameSelection(const ReadPattern& first, const ReadPattern& second) {
  return first.table == second.table && !second.furtherConditions &&
         std::ranges::equal(first.equalities, second.equalities,
                            [](const ColumnTerm& a, const ColumnTerm& b) {
                              return a.columnHash == b.columnHash && a.source == b.source &&
                                     a.source != ColumnTerm::Source::Unknown && a.parameter == b.parameter &&
                                     a.literal == b.literal;
                            });
}

} // namespace

/// Clients of PostgreSQL refuse the description of more than about 7,400 parameters.
std::size_t setsAtOnce(std::size_t width) {
  constexpr std::size_t mostValues = 7000;
  return std::max<std::size_t>(mostValues / std::max<std::size_t>(width, 1), 1);
}

template <class Entry>
template <class Make>
Entry& StatementCache::Map<Entry>::get(const Sql& statement, Make&& make) {
  const auto shapes = statement.shapes();
  std::unique_ptr<Entry>& entry =
      shapes.size() == 1 && statement.names().empty()
          ? single_[shapes.front()]
          : joined_[{{shapes.begin(), shapes.end()}, {statement.names().begin(), statement.names().end()}}];
  if (!entry) entry = std::make_unique<Entry>(make());
  return *entry;
}

std::string StatementCache::quoted(std::string_view identifier) const {
  return quotedName(identifier, driver_.dialect());
}

std::string StatementCache::orderClause(const SelectParts& parts, const TableKey& key) const {
  return relational::orderClause(parts, key.row, driver_.dialect());
}

std::string StatementCache::rowsOf(const SelectParts& parts, const TableKey& key) const {
  return "SELECT " + (key.row.empty() ? std::string() : key.row + ", ") + std::string(parts.list) + " FROM " +
         quoted(parts.table);
}

PlainStatement& StatementCache::plain(const Sql& statement) {
  return plain_.get(statement, [&] {
    const std::string text = translate(statement, driver_.dialect());
    return PlainStatement{compile(text), WritePattern::of(text),
                          driver_.dialect().joinsStatements ? SetStatement::of(text) : std::nullopt};
  });
}

PlainStatement& StatementCache::upsert(std::string_view table, std::span<const ColumnValue> row,
                                       std::size_t keys) {
  std::string key(table);
  for (const ColumnValue& each : row) key.append(1, ',').append(each.column);
  key.append(1, ',').append(std::to_string(keys));
  PlainStatement*& known = upserts_[key];
  if (known == nullptr) known = &plain(driver_.dialect().put(table, row, keys));
  return *known;
}

TableKey StatementCache::rowKeyOf(std::string_view table) {
  const Dialect& dialect = driver_.dialect();
  return dialect.rowKeyColumn.empty() ? TableKey{std::string(dialect.rowKey), {}, {}} : driver_.keyOf(table);
}

StreamQuery StatementCache::stream(const Sql& statement) {
  const std::string text = translate(statement, driver_.dialect());
  const auto parts = splitSelect(text);
  if (!parts || parts->aggregate)
    return {driver_.prepare(text, StatementLife::Once), {0, listsWholeRows(text), {}}};
  const std::string ordered = "SELECT " + std::string(parts->list) + " FROM " + quoted(parts->table) +
                              whereClause(*parts) + orderClause(*parts, rowKeyOf(parts->table));
  return {driver_.prepare(ordered, StatementLife::Once), layoutOf(*parts, 0)};
}

RowQuery& StatementCache::rows(const Sql& statement) {
  RowQuery& query = rows_.get(statement, [&] {
    RowQuery query;
    query.text = translate(statement, driver_.dialect());
    query.parameterCount = statement.values().size();
    const auto parts = splitSelect(query.text);
    if (parts) query.pattern = ReadPattern::of(parts->table, parts->where);
    if (!parts || parts->aggregate) {
      query.select = compile(query.text);
      query.source.layout.wholeRows = listsWholeRows(query.text);
      query.source.layout.aggregate = parts.has_value();
      return query;
    }
    query.sorted = !parts->orderBy.empty();
    RowSource& source = query.source;
    source.key = driver_.keyOf(parts->table);
    query.select =
        compile(rowsOf(*parts, source.key) + whereClause(*parts) + orderClause(*parts, source.key));
    source.layout = layoutOf(*parts, source.key.row.empty() ? 0 : 1);
    if (!source.key.row.empty()) source.table = std::string(parts->table);
    source.tableKey = query.pattern->table;
    return query;
  });
  if (query.whole == nullptr && readsWholeRows(query)) {
    query.whole = &query;
    wholeRows_.push_back(&query);
  }
  return query;
}

RowQuery* StatementCache::wholeRows(RowQuery& query) {
  if (query.whole == nullptr && query.wholeOf < wholeRows_.size() && query.pattern) {
    const auto found =
        std::find_if(wholeRows_.begin() + static_cast<std::ptrdiff_t>(query.wholeOf), wholeRows_.end(),
                     [&](const RowQuery* whole) { return sameSelection(*whole->pattern, *query.pattern); });
    if (found != wholeRows_.end()) query.whole = *found;
    query.wholeOf = wholeRows_.size();
  }
  return query.whole == &query ? nullptr : query.whole;
}

KeysetQuery& StatementCache::keyset(const Sql& statement) {
  return keysets_.get(statement, [&] {
    const std::string text = translate(statement, driver_.dialect());
    const auto parts = splitSelect(text);
    KeysetQuery query;
    RowSource& source = query.source;
    if (parts) source.key = driver_.keyOf(parts->table);
    if (!parts || parts->aggregate || source.key.row.empty())
      throw StatementError("the statement cannot be opened as a keyset: " + statement.text(), 0);
    source.table = std::string(parts->table);
    source.tableKey = asciiLower(source.table);
    source.layout = layoutOf(*parts, 1);
    const std::string& textKey = source.key.text;
    const std::string keyList = source.key.row + (textKey.empty() ? "" : ", " + quoted(textKey));
    query.keys = compile("SELECT " + keyList + " FROM " + quoted(source.table) + whereClause(*parts) +
                         orderClause(*parts, source.key));
    query.rowText = rowsOf(*parts, source.key) + " WHERE " + source.key.row;
    query.row = compile(query.rowText + "=?");
    completeShape(source, *query.row);
    const std::size_t index =
        textKey.empty() ? source.shape->size() : source.shape->find(ColumnName(textKey));
    if (index < source.shape->size()) source.keyColumn = static_cast<int>(index);
    return query;
  });
}

std::vector<std::string> StatementCache::typesOf(Statement& statement, std::size_t count) {
  std::vector<std::string> types;
  for (std::size_t i = 0; i < count; ++i) types.emplace_back(statement.parameterType(i));
  return types;
}

/// Full groups are of one size, the others of any.
std::unique_ptr<Statement>& StatementCache::roomFor(ManyStatements& statements, std::size_t rows) {
  constexpr std::size_t most = 8;
  if (statements.size() >= most && !statements.contains(rows)) statements.clear();
  return statements[rows];
}

Statement* StatementCache::many(PlainStatement& plain, std::size_t sets) {
  if (!plain.set) return nullptr;
  std::unique_ptr<Statement>& statement = roomFor(plain.many, sets);
  if (!statement) {
    std::vector<std::string> types;
    for (std::size_t i = 0; i < plain.statement->parameterCount(); ++i)
      types.emplace_back(plain.statement->parameterType(i));
    statement = compile(plain.set->text(sets, types));
  }
  return statement.get();
}

Statement& StatementCache::manyUpdates(RowSource& source, const ColumnMask& columns, std::size_t rows) {
  std::unique_ptr<Statement>& statement = roomFor(source.manyUpdates[columns], rows);
  if (statement) return *statement;
  Statement& single = update(source, columns);
  std::vector<std::string> types = typesOf(single, single.parameterCount());
  // The key comes last, as it does in the single one.
  std::string assignments;
  std::size_t next = 0;
  for (std::size_t i = 0; i < source.shape->size(); ++i) {
    if (!columns[i]) continue;
    assignments.append(assignments.empty() ? "" : ", ").append(quoted(source.shape->name(i)));
    assignments.append(" = qx.qx_").append(std::to_string(++next));
  }
  statement =
      compile("UPDATE " + quoted(source.table) + " SET " + assignments + " FROM " + valuesTable(rows, types) +
              " WHERE " + source.key.row + " = qx.qx_" + std::to_string(next + 1));
  return *statement;
}

std::unique_ptr<Statement> StatementCache::manyInserts(RowSource& source,
                                                       std::span<const ColumnMask* const> rows) {
  ColumnMask all;
  for (const ColumnMask* row : rows) all |= *row;
  std::string names;
  for (std::size_t i = 0; i < source.shape->size(); ++i)
    if (all[i]) names.append(names.empty() ? "" : ", ").append(quoted(source.shape->name(i)));
  std::string text = "INSERT INTO " + quoted(source.table) + " (" + names + ") VALUES ";
  for (const ColumnMask* row : rows) {
    text += row == rows.front() ? "(" : ", (";
    std::string_view separator;
    for (std::size_t i = 0; i < source.shape->size(); ++i) {
      if (!all[i]) continue;
      text.append(separator).append((*row)[i] ? "?" : "DEFAULT");
      separator = ",";
    }
    text += ')';
  }
  return driver_.prepare(text, StatementLife::Once);
}

ManyQuery& StatementCache::many(RowQuery& query, std::size_t rows) {
  rows = std::bit_ceil(rows);
  ManyQuery& many = query.many[rows];
  if (many.select) return many;
  const auto parts = splitSelect(query.text);
  const TableKey& key = query.source.key;
  const std::string table = quoted(parts->table);
  std::string list;
  for (const std::string_view term : listTerms(parts->list))
    list.append(", ").append(term == "*" ? table + ".*" : std::string(term));
  std::size_t next = 0;
  const std::string condition = withValuesOfTable(parts->where, next);
  const std::string order = orderClause(*parts, key);
  constexpr std::string_view orderBy = " ORDER BY ";
  many.select = compile(
      "SELECT qx_n" + (key.row.empty() ? std::string() : ", " + table + "." + quoted(key.row)) + list +
      " FROM " + valuesTable(rows, typesOf(*query.select, query.parameterCount)) + " JOIN " + table + " ON " +
      condition + " ORDER BY qx_n" + (order.empty() ? "" : ", " + order.substr(orderBy.size())));
  many.rows = rows;
  many.layout = query.source.layout;
  ++many.layout.hidden;
  return many;
}

ManyQuery& StatementCache::many(KeysetQuery& query, std::size_t rows) {
  rows = std::bit_ceil(rows);
  ManyQuery& many = query.many[rows];
  if (many.select) return many;
  std::string keys = "?";
  for (std::size_t i = 1; i < rows; ++i) keys += ", ?";
  many.select = compile(query.rowText + " IN (" + keys + ")" + std::string(driver_.dialect().lockingRead));
  many.rows = rows;
  return many;
}

void StatementCache::completeShape(RowSource& source, Statement& statement) const {
  if (source.shape && source.shape->width() == statement.columnCount()) return;
  source.shape.emplace(statement, source.layout, driver_.dialect(), spelling_);
  source.updates.clear();
  source.inserts.clear();
  source.manyUpdates.clear();
}

Statement& StatementCache::update(RowSource& source, const ColumnMask& columns) {
  std::unique_ptr<Statement>& statement = source.updates[columns];
  if (!statement) {
    std::string text = "UPDATE " + quoted(source.table) + " SET ";
    std::string separator;
    for (std::size_t i = 0; i < source.shape->size(); ++i) {
      if (!columns[i]) continue;
      text += separator + quoted(source.shape->name(i)) + "=?";
      separator = ", ";
    }
    statement = compile(text + " WHERE " + source.key.row + "=?");
  }
  return *statement;
}

bool StatementCache::assignsKey(const RowSource& source, const ColumnMask& columns) const {
  if (source.key.identity.empty() || driver_.dialect().rowKeyColumn.empty()) return false;
  const std::size_t index = source.shape->find(ColumnName(source.key.identity));
  return index < source.shape->size() && !columns[index];
}

Statement& StatementCache::insert(RowSource& source, const ColumnMask& columns) {
  std::unique_ptr<Statement>& statement = source.inserts[columns];
  if (!statement) {
    std::string names;
    std::string parameters;
    for (std::size_t i = 0; i < source.shape->size(); ++i) {
      if (!columns[i]) continue;
      names += (names.empty() ? "" : ", ") + quoted(source.shape->name(i));
      parameters += parameters.empty() ? "?" : ", ?";
    }
    const std::string& identity = source.key.identity;
    if (assignsKey(source, columns)) {
      names += (names.empty() ? "" : ", ") + quoted(identity);
      parameters.append(parameters.empty() ? "" : ", ").append("(SELECT coalesce(max(" + quoted(identity));
      parameters.append("), 0) + 1 FROM " + quoted(source.table) + ")");
    }
    statement = compile(insertText(source.table, names, parameters, source.key.row, driver_.dialect()));
  }
  return *statement;
}

} // namespace qx::relational
