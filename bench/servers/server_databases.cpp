#include "servers/server_databases.h"

#include "adapters/odbc/connection_string.h"
#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "erp/schema.h"

#include <algorithm>
#include <exception>
#include <iostream>

namespace qx::bench {
namespace {

constexpr std::string_view copyName = "qxbench_copy";

/// Names of databases have no hyphens.
std::string databaseOf(const std::string& name) {
  std::string database = "qxbench_" + name;
  std::ranges::replace(database, '-', '_');
  return database;
}

/// In the order in which the rows were added.
void copyRows(Connection& from, Connection& to, const erp::SchemaTable& table) {
  const auto source =
      from.openStream(sql("Select * From "_sql, name(table.name), " Order By "_sql, name(from.rowKey())));
  const auto target = to.open(sql("Select * From "_sql, name(table.name), " Where 1 = 0"_sql));
  for (; !source->eof(); source->moveNext()) {
    target->addNew();
    for (const erp::SchemaColumn& column : table.columns)
      target->set(ColumnName(column.name), source->value(ColumnName(column.name)));
    target->update();
  }
}

} // namespace

ServerDatabases::ServerDatabases(std::string_view connectionString)
    : connectionString_(connectionString), server_(OdbcDatabase().open(connectionString)) {}

ServerDatabases::~ServerDatabases() {
  try {
    while (!databases_.empty()) drop(*databases_.begin());
  } catch (const std::exception& error) {
    std::cerr << "databases are left on the server: " << error.what() << '\n';
  }
}

std::string ServerDatabases::connectionStringOf(const std::string& database) const {
  odbc::ConnectionString text(connectionString_);
  text.set("Database", database);
  return text.text();
}

void ServerDatabases::create(const std::string& database, const std::string& likeness) {
  drop(database);
  databases_.insert(database);
  server_->execute(sql("Create Database "_sql, name(database), " Template "_sql, name(likeness)));
}

void ServerDatabases::drop(const std::string& database) {
  server_->execute(sql("Drop Database If Exists "_sql, name(database)));
  databases_.erase(database);
}

void ServerDatabases::fill(const std::string& name, const std::filesystem::path& file) {
  const std::string database = databaseOf(name);
  create(database, "template1");
  const auto columnNames = erp::schemaNames();
  const auto target = OdbcDatabase(columnNames).create(connectionStringOf(database));
  const auto source = SqliteDatabase().open(file.string());
  WorkUnit unit(*target);
  target->collectWrites();
  for (const erp::SchemaTable& table : erp::schemaTables()) {
    target->execute(erp::createTable(table, table.name));
    copyRows(*source, *target, table);
    for (const erp::SchemaIndex& index : table.indexes) target->execute(erp::createIndex(table, index));
  }
  unit.commit();
  // As the server does by itself a while after many rows were added.
  target->execute(sql("Analyze"_sql));
}

std::string ServerDatabases::copyOf(const std::string& name) {
  const std::string copy(copyName);
  create(copy, databaseOf(name));
  return connectionStringOf(copy);
}

} // namespace qx::bench
