#include "erp/schema.h"

#include <algorithm>

namespace qx::erp {
namespace {

/// The types by the names that the adapters translate.
Sql typeOf(ColumnType type) {
  switch (type) {
  case ColumnType::Code:
    return sql(" CODE"_sql);
  case ColumnType::Text:
    return sql(" TEXT"_sql);
  case ColumnType::Small:
    return sql(" SMALLINT"_sql);
  case ColumnType::Integer:
    return sql(" INTEGER"_sql);
  case ColumnType::Double:
    return sql(" DOUBLE"_sql);
  case ColumnType::Boolean:
    return sql(" BOOLEAN"_sql);
  case ColumnType::Money:
    break;
  }
  return sql(" MONEY"_sql);
}

/// A single integer key is given by the database when a row comes without one.
bool keyIsAssigned(const SchemaTable& table) {
  const auto keys =
      std::ranges::count_if(table.columns, [](const SchemaColumn& column) { return column.key; });
  return keys == 1 && std::ranges::any_of(table.columns, [](const SchemaColumn& column) {
           return column.key && column.type == ColumnType::Integer;
         });
}

Sql defaultOf(ColumnDefault standard) {
  switch (standard) {
  case ColumnDefault::Zero:
    return sql(" DEFAULT 0"_sql);
  case ColumnDefault::One:
    return sql(" DEFAULT 1"_sql);
  case ColumnDefault::EmptyText:
    return sql(" DEFAULT ''"_sql);
  case ColumnDefault::DomesticTaxMark:
    static_assert(domesticTaxMark == "IN");
    return sql(" DEFAULT 'IN'"_sql);
  case ColumnDefault::None:
    break;
  }
  return {};
}

Sql separator(bool& first) {
  const bool none = first;
  first = false;
  return none ? Sql() : sql(", "_sql);
}

Sql primaryKey(const SchemaTable& table) {
  Sql statement;
  bool first = true;
  for (const SchemaColumn& column : table.columns) {
    if (!column.key) continue;
    statement.append(first ? sql(", PRIMARY KEY ("_sql) : sql(", "_sql)).append(sql(name(column.name)));
    first = false;
  }
  if (!first) statement.append(sql(")"_sql));
  return statement;
}

/// An index by date has the expression by which the statements sort.
Sql indexTerm(const SchemaIndex& index, std::size_t column) {
  const bool last = column + 1 == index.columns.size() || index.columns[column + 1].empty();
  if (index.kind == IndexKind::ByDate && last)
    return sql("Convert(DateTime, "_sql, name(index.columns[column]), ", 104)"_sql);
  return sql(name(index.columns[column]));
}

} // namespace

Sql createTable(const SchemaTable& table, std::string_view tableName) {
  Sql statement = sql("CREATE TABLE "_sql, name(tableName), " ("_sql);
  const bool assigned = keyIsAssigned(table);
  bool first = true;
  for (const SchemaColumn& column : table.columns) {
    statement.append(separator(first)).append(sql(name(column.name)));
    statement.append(column.key && assigned ? sql(" ASSIGNED"_sql) : typeOf(column.type));
    statement.append(defaultOf(column.standard));
    if (column.key) statement.append(sql(" NOT NULL"_sql));
  }
  return statement.append(primaryKey(table)).append(sql(")"_sql));
}

Sql createIndex(const SchemaTable& table, const SchemaIndex& index) {
  Sql statement =
      index.kind == IndexKind::Unique ? sql("CREATE UNIQUE INDEX "_sql) : sql("CREATE INDEX "_sql);
  statement.append(sql(name(index.name), " ON "_sql, name(table.name), " ("_sql));
  bool first = true;
  for (std::size_t i = 0; i < index.columns.size() && !index.columns[i].empty(); ++i)
    statement.append(separator(first)).append(indexTerm(index, i));
  statement.append(sql(")"_sql));
  if (index.kind == IndexKind::Released)
    statement.append(sql(" WHERE "_sql, name(index.columns.front()), " = 1"_sql));
  return statement;
}

std::vector<SchemaTable> schemaTables() {
  std::vector<SchemaTable> all;
  for (const auto group :
       {stagingTables(), customerTables(), orderTables(), componentTables(), handoverTables()})
    all.insert(all.end(), group.begin(), group.end());
  return all;
}

std::vector<std::string_view> schemaNames() {
  std::vector<std::string_view> names;
  for (const SchemaTable& table : schemaTables())
    for (const SchemaColumn& column : table.columns) names.push_back(column.name);
  return names;
}

void createSchema(Connection& connection) {
  for (const SchemaTable& table : schemaTables()) {
    connection.execute(createTable(table, table.name));
    for (const SchemaIndex& index : table.indexes) connection.execute(createIndex(table, index));
  }
  connection.insert("Schemastand",
                    sql("Insert Into Schemastand (Version) Values ("_sql, number(schemaVersion), ")"_sql));
}

std::optional<std::string> storedSchemaVersion(Connection& connection) {
  try {
    const auto rows = connection.open(sql("Select Version From Schemastand"_sql));
    if (rows->eof()) return std::nullopt;
    return rows->text("Version");
  } catch (const StatementError&) {
    // A missing table is an answer, not a failure.
    return std::nullopt;
  }
}

} // namespace qx::erp
