// The database products that can be reached through ODBC.
#pragma once

#include "adapters/sql/dialect.h"
#include "adapters/sql/failure_kind.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

namespace qx::odbc {

/// What the adapter asks of a product in its own words. Several statements in one text cost one round trip.
struct Server {
  std::string_view product; ///< as the driver reports it
  std::string_view drivers; ///< a word of the names of its drivers
  const relational::Dialect* dialect;
  /// Settings of the driver on which the adapter relies, whatever the user's connection string says.
  std::span<const std::pair<std::string_view, std::string_view>> settings;
  /// Of error numbers whose SQLSTATE tells too little; null for none.
  const relational::NumberedStates* states;
  /// The longest text, in units of UTF-16, that is bound as a short one; 0 without such a limit.
  std::size_t longestShortText;
  /// Run once on every new connection: statements without rows, and a query that gives one row with the
  /// encoding of the database's texts.
  std::string_view start;
  std::string_view greeting;
  std::string_view encoding; ///< the only one that is accepted
  /// The tables with the column that is the key of their rows, and all tables and views.
  std::string_view keyedTables;
  std::string_view tables;
  std::string_view triggeredTables; ///< those for which it does something of its own when a row is written
  /// The server's own tool for backups.
  std::string_view backupTool;
  /// The columns of the table whose quoted name is the parameter: name, type and default, as statements write
  /// them; empty where tables are not upgraded.
  std::string_view columns;
  /// What the index whose quoted name is the parameter is on.
  std::string_view index;
  std::string_view begin;        ///< and sets the savepoint "step"
  std::string_view beginReading; ///< the same with one state for all reads
  std::string_view commit;
  std::string_view rollback;
  std::string_view set;     ///< a savepoint; the name follows
  std::string_view release; ///< and those set since; empty where a later one of the same name takes its place
  std::string_view undo;    ///< everything since the savepoint, which remains
};

/// Null for a product that is not known. `product` is what the driver reports.
const Server* findServer(std::string_view product);
/// The product whose driver the user names; null when the name tells nothing.
const Server* guessServer(std::string_view driverName);

} // namespace qx::odbc
