// The constructs in which databases differ.
#pragma once

#include "platform/database.h"
#include "platform/sql.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qx::relational {

/// A construct as the component's statements have it, and as a database has it.
struct Rewriting {
  std::string_view from;
  std::string_view to;
};

/// Where a select says how many rows it gives at most.
enum class RowLimit : std::uint8_t { Behind, InFront };

/// One column of the table of constructs: how a database writes what the component's statements ask for.
struct Dialect {
  std::string_view name;
  /// What stands around a name; inside, the second one is doubled.
  std::string_view quotes;
  /// What identifies a row of our tables, ascending in order of insertion.
  std::string_view rowKey;
  /// The declaration of that column at the head of a new table; empty when every table has it anyway, and
  /// `*` leaves it out.
  std::string_view rowKeyColumn;
  /// What precedes the name of the row key that an insert returns, before or behind its values; both empty
  /// when the driver knows the key.
  std::string_view output;
  std::string_view returning;
  /// The SQLSTATE of a row whose key is taken.
  std::string_view keyTaken;
  /// Names without quotes are read in lower case, so all names are in lower case, and brackets are unknown.
  bool lowersNames;
  /// Behind a rising and a falling sort term: nulls are the least values.
  std::string_view nullsFirst;
  std::string_view nullsLast;
  RowLimit rowLimit;
  /// Behind a select whose rows are locked for the unit of work; empty when no row is locked alone, or when a
  /// hint at the table says it.
  std::string_view lockingRead;
  /// A join whose left side is read first.
  std::string_view drivenJoin;
  /// A unique index lets one null in only, and an index has columns only: an expression's column is kept
  /// beside the keys.
  bool plainIndexes;
  /// A temporary table is made by a select into it.
  bool selectsInto;
  /// Fixed texts, found without regard to case.
  std::span<const Rewriting> rewritings;
  /// The types of columns.
  std::span<const Rewriting> types;
  /// An integer expression that orders German date texts by time, null for other texts. It uses built-in
  /// functions only, so that any program that writes the table can maintain an index on it.
  std::string (*chronological)(std::string_view column);
  /// The whole number at the beginning of a text column, 0 without one; null when a cast does that.
  std::string (*wholeNumber)(std::string_view column);
  /// As in `Connection`.
  Sql (*put)(std::string_view table, std::span<const ColumnValue> row, std::size_t keys);
  Sql (*beginsWith)(const Sql& text, std::string_view prefix, bool afterPrefix);
  Sql (*comesAfter)(std::span<const ColumnValue> position);
  /// What a database needs before the first table; does nothing where it is there already.
  std::span<const std::string_view> setUp;
  /// Whether a statement costs so much by itself that those of many jobs are joined.
  bool joinsStatements = false;
};

/// The embedded database.
extern const Dialect sqliteDialect;
/// PostgreSQL and the engines that speak its protocol.
extern const Dialect postgresDialect;
/// Microsoft SQL Server, from version 2016.
extern const Dialect sqlServerDialect;

} // namespace qx::relational
