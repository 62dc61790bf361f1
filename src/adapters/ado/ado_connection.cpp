#include "adapters/ado/ado_connection.h"

#include "adapters/ado/ado_recordset.h"
#include "adapters/sql/translation.h"
#include "model/text.h"
#include "platform/bulk_staging.h"
#include "platform/database_error.h"
#include "platform/maintenance.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qx {

using automation::call;
using automation::get;

AdoConnection::AdoConnection(automation::ObjectPointer connection, ado::CreateObject create)
    : database_(std::move(connection), std::move(create)) {}

AdoConnection::~AdoConnection() = default;

bool AdoConnection::isConnection(automation::AutomationObject& object) {
  constexpr std::array<std::string_view, 4> needed{"ConnectionString", "State", "Errors", "OpenSchema"};
  return std::ranges::all_of(needed,
                             [&](std::string_view name) { return object.memberId(name).has_value(); });
}

std::int64_t AdoConnection::execute(const Sql& statement) {
  return database_.execute(relational::translate(statement, database_.dialect()), statement.values());
}

void AdoConnection::put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  insert(table, database_.dialect().put(table, row, keys));
}

std::unique_ptr<BulkStaging> AdoConnection::bulkStaging() {
  throw StatementError("a file is not staged as a whole on the connection of another program", 0);
}

std::unique_ptr<Maintenance> AdoConnection::maintenance() {
  throw StatementError("a database is not maintained on the connection of another program", 0);
}

std::vector<std::string> AdoConnection::tableNames() {
  constexpr std::int32_t listOfTables = 20;
  std::vector<std::string> names;
  const auto tables = database_.schema(listOfTables);
  const auto fields = automation::objectOf(get(*tables, "Fields"));
  const auto name = automation::objectOf(call(*fields, "Item", {"TABLE_NAME"}));
  const auto type = automation::objectOf(call(*fields, "Item", {"TABLE_TYPE"}));
  for (; !automation::truthOf(get(*tables, "EOF")); call(*tables, "MoveNext")) {
    const std::string kind = automation::textOf(get(*type, "Value"));
    if (equalCodes(kind, "table") || equalCodes(kind, "view"))
      names.push_back(automation::textOf(get(*name, "Value")));
  }
  return names;
}

Sql AdoConnection::beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const {
  return database_.dialect().beginsWith(text, prefix, afterPrefix);
}

Sql AdoConnection::comesAfter(std::span<const ColumnValue> position) const {
  return database_.dialect().comesAfter(position);
}

std::unique_ptr<Recordset> AdoConnection::open(const Sql& statement) {
  return std::make_unique<ado::AdoRecordset>(database_, statement, ado::RowUse::Fetched);
}

std::unique_ptr<Recordset> AdoConnection::openKeyset(const Sql& statement) {
  return std::make_unique<ado::AdoRecordset>(database_, statement, ado::RowUse::Keyset);
}

/// A cursor of the server would keep the connection from running other statements until the last row.
std::unique_ptr<Recordset> AdoConnection::openStream(const Sql& statement) {
  return std::make_unique<ado::AdoRecordset>(database_, statement, ado::RowUse::Stream);
}

} // namespace qx
