// The constructs in which databases differ.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qx::relational {

/// A construct as the component's statements have it, and as a database has it.
struct Rewriting {
  std::string_view from;
  std::string_view to;
};

/// One column of the table of constructs: how a database writes what the component's statements ask for.
struct Dialect {
  std::string_view name;
  /// What identifies a row of our tables, ascending in order of insertion.
  std::string_view rowKey;
  /// The declaration of that column at the head of a new table; empty when every table has it anyway, and
  /// `*` leaves it out.
  std::string_view rowKeyColumn;
  /// Between the values of an insert and the name of the row key; empty when the driver knows the key.
  std::string_view returning;
  /// Names without quotes are read in lower case, so all names are in lower case, and brackets are unknown.
  bool lowersNames;
  /// Behind a rising and a falling sort term: nulls are the least values.
  std::string_view nullsFirst;
  std::string_view nullsLast;
  /// A join whose left side is read first.
  std::string_view drivenJoin;
  /// Fixed texts, found without regard to case.
  std::span<const Rewriting> rewritings;
  /// The types of columns.
  std::span<const Rewriting> types;
  /// An integer expression that orders German date texts by time, null for other texts. It uses built-in
  /// functions only, so that any program that writes the table can maintain an index on it.
  std::string (*chronological)(std::string_view column);
  /// The whole number at the beginning of a text column, 0 without one; null when a cast does that.
  std::string (*wholeNumber)(std::string_view column);
  /// What a database needs before the first table; does nothing where it is there already.
  std::span<const std::string_view> setUp;
  /// Whether a statement costs so much by itself that those of many jobs are joined.
  bool joinsStatements = false;
  /// Behind a select: locks its rows until the unit ends.
  std::string_view lockRows = {};
};

/// The embedded database.
extern const Dialect sqliteDialect;
/// PostgreSQL and the engines that speak its protocol.
extern const Dialect postgresDialect;

} // namespace qx::relational
