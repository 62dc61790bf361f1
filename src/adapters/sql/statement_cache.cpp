#include "adapters/sql/statement_cache.h"

#include "adapters/sql/select_parts.h"
#include "adapters/sql/translation.h"
#include "model/text.h"
#include "platform/database_error.h"

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

} // namespace

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

/// Appends the row key to the order: rows without an order and equal sort keys come in order of insertion.
std::string StatementCache::orderClause(const SelectParts& parts, const TableKey& key) const {
  std::string terms = sortTerms(parts.orderBy, driver_.dialect());
  if (!key.row.empty()) {
    terms.append(terms.empty() ? "" : ", ").append(quoted(parts.table)).append(".").append(key.row);
    if (parts.descending()) terms += " DESC";
  }
  return terms.empty() ? terms : " ORDER BY " + terms;
}

std::string StatementCache::rowsOf(const SelectParts& parts, const TableKey& key) const {
  return "SELECT " + (key.row.empty() ? std::string() : key.row + ", ") + std::string(parts.list) + " FROM " +
         quoted(parts.table);
}

Statement& StatementCache::plain(const Sql& statement) {
  return *plain_.get(statement, [&] { return compile(translate(statement, driver_.dialect())); });
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
  return rows_.get(statement, [&] {
    RowQuery query;
    const std::string text = translate(statement, driver_.dialect());
    const auto parts = splitSelect(text);
    if (!parts || parts->aggregate) {
      query.select = compile(text);
      query.source.layout.wholeRows = listsWholeRows(text);
      return query;
    }
    RowSource& source = query.source;
    source.key = driver_.keyOf(parts->table);
    query.select =
        compile(rowsOf(*parts, source.key) + whereClause(*parts) + orderClause(*parts, source.key));
    source.layout = layoutOf(*parts, source.key.row.empty() ? 0 : 1);
    if (!source.key.row.empty()) source.table = std::string(parts->table);
    return query;
  });
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
    source.layout = layoutOf(*parts, 1);
    const std::string& textKey = source.key.text;
    const std::string keyList = source.key.row + (textKey.empty() ? "" : ", " + quoted(textKey));
    query.keys = compile("SELECT " + keyList + " FROM " + quoted(source.table) + whereClause(*parts) +
                         orderClause(*parts, source.key));
    query.row = compile(rowsOf(*parts, source.key) + " WHERE " + source.key.row + "=?");
    completeShape(source, *query.row);
    const std::size_t index =
        textKey.empty() ? source.shape->size() : source.shape->find(ColumnName(textKey));
    if (index < source.shape->size()) source.keyColumn = static_cast<int>(index);
    return query;
  });
}

void StatementCache::completeShape(RowSource& source, Statement& statement) const {
  if (source.shape && source.shape->width() == statement.columnCount()) return;
  source.shape.emplace(statement, source.layout, driver_.dialect(), spelling_);
  source.updates.clear();
  source.inserts.clear();
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
