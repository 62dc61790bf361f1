#include "adapters/sqlite/statement_cache.h"

#include "adapters/sqlite/dialect.h"
#include "adapters/sqlite/select_parts.h"
#include "model/text.h"
#include "platform/database_error.h"

namespace qx::sqlite {
namespace {

/// Appends the rowid to the order: rows without an order and equal sort keys come in order of insertion.
std::string orderClause(const SelectParts& parts) {
  std::string clause = " ORDER BY ";
  if (!parts.orderBy.empty()) clause += std::string(parts.orderBy) + ", ";
  clause += "rowid";
  if (parts.descending()) clause += " DESC";
  return clause;
}

std::string whereClause(const SelectParts& parts) {
  return parts.where.empty() ? std::string() : " WHERE " + std::string(parts.where);
}

std::string rowsOf(const SelectParts& parts) {
  return "SELECT rowid, " + std::string(parts.list) + " FROM " + quotedName(parts.table);
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

PreparedStatement& StatementCache::plain(const Sql& statement) {
  return plain_.get(statement, [&] { return compile(translate(statement)); });
}

PreparedStatement StatementCache::stream(const Sql& statement) {
  const std::string text = translate(statement);
  const auto parts = splitSelect(text);
  if (!parts || parts->aggregate) return {database_, text, StatementLife::Once};
  const std::string ordered = "SELECT " + std::string(parts->list) + " FROM " + quotedName(parts->table) +
                              whereClause(*parts) + orderClause(*parts);
  return {database_, ordered, StatementLife::Once};
}

RowQuery& StatementCache::rows(const Sql& statement) {
  return rows_.get(statement, [&] {
    RowQuery query;
    const std::string text = translate(statement);
    const auto parts = splitSelect(text);
    if (parts && !parts->aggregate) {
      query.select = compile(rowsOf(*parts) + whereClause(*parts) + orderClause(*parts));
      query.source.table = std::string(parts->table);
      query.source.hidden = 1;
      query.source.identity = keyOf(query.source.table).identity;
    } else {
      query.select = compile(text);
    }
    return query;
  });
}

KeysetQuery& StatementCache::keyset(const Sql& statement) {
  return keysets_.get(statement, [&] {
    const std::string text = translate(statement);
    const auto parts = splitSelect(text);
    if (!parts || parts->aggregate)
      throw StatementError("the statement cannot be opened as a keyset: " + statement.text(), 0);
    KeysetQuery query;
    query.source.table = std::string(parts->table);
    query.source.hidden = 1;
    const TableKey tableKey = keyOf(query.source.table);
    query.source.identity = tableKey.identity;
    const std::string& key = tableKey.text;
    const std::string keyList = key.empty() ? "rowid" : "rowid, " + quotedName(key);
    query.keys = compile("SELECT " + keyList + " FROM " + quotedName(parts->table) + whereClause(*parts) +
                         orderClause(*parts));
    query.row = compile(rowsOf(*parts) + " WHERE rowid=?");
    completeShape(query.source, query.row);
    const std::size_t index =
        key.empty() ? query.source.shape->size() : query.source.shape->find(ColumnName(key));
    if (index < query.source.shape->size()) query.source.keyColumn = static_cast<int>(index);
    return query;
  });
}

void StatementCache::completeShape(RowSource& source, const PreparedStatement& statement) {
  const auto columns = static_cast<std::size_t>(statement.columnCount() - source.hidden);
  if (source.shape && source.shape->size() == columns) return;
  source.shape.emplace(statement, source.hidden);
  source.updates.clear();
  source.inserts.clear();
}

PreparedStatement& StatementCache::update(RowSource& source, const ColumnMask& columns) {
  PreparedStatement& statement = source.updates[columns];
  if (!statement) {
    std::string text = "UPDATE " + quotedName(source.table) + " SET ";
    std::string separator;
    for (std::size_t i = 0; i < source.shape->size(); ++i) {
      if (!columns[i]) continue;
      text += separator + quotedName(source.shape->name(i)) + "=?";
      separator = ", ";
    }
    statement = compile(text + " WHERE rowid=?");
  }
  return statement;
}

PreparedStatement& StatementCache::insert(RowSource& source, const ColumnMask& columns) {
  PreparedStatement& statement = source.inserts[columns];
  if (!statement) {
    std::string names;
    std::string parameters;
    for (std::size_t i = 0; i < source.shape->size(); ++i) {
      if (!columns[i]) continue;
      names += (names.empty() ? "" : ", ") + quotedName(source.shape->name(i));
      parameters += parameters.empty() ? "?" : ", ?";
    }
    statement = names.empty() ? compile("INSERT INTO " + quotedName(source.table) + " DEFAULT VALUES")
                              : compile("INSERT INTO " + quotedName(source.table) + " (" + names +
                                        ") VALUES (" + parameters + ")");
  }
  return statement;
}

StatementCache::TableKey StatementCache::keyOf(const std::string& table) {
  PreparedStatement info(database_, "SELECT name, type FROM pragma_table_info(?) WHERE pk > 0",
                         StatementLife::Once);
  const Value tableName(table);
  info.bind(1, tableName);
  TableKey key;
  int count = 0;
  while (info.step()) {
    ++count;
    const std::string name = info.column(0, ColumnKind::Plain).text();
    const std::string type = info.column(1, ColumnKind::Plain).text();
    if (findWord(type, "text") == 0) key.text = name;
    if (equalCodes(type, "integer")) key.identity = name;
  }
  return count == 1 ? key : TableKey();
}

} // namespace qx::sqlite
