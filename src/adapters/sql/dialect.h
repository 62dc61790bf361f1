// The constructs in which databases differ.
#pragma once

#include <string_view>

namespace qx::relational {

/// One column of the table of constructs: how a database writes what the component's statements ask for.
struct Dialect {
  std::string_view name;
  /// The column that identifies the rows of our tables.
  std::string_view rowKey;
};

/// The embedded database.
extern const Dialect sqliteDialect;
/// PostgreSQL and the engines that speak its protocol.
extern const Dialect postgresDialect;

} // namespace qx::relational
