// What a database gives so that connections and record sets can be built on it.
#pragma once

#include "platform/value.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx::relational {

struct Dialect;

/// The kind of value that the declared type of a column yields. `Plain`: an integer, a double or a text, as
/// the database stores it.
enum class ColumnKind : std::uint8_t { Plain, Double, Currency, Boolean };

/// A column of a result by its place.
struct ColumnPlace {
  std::uint32_t index;
  ColumnKind kind;
};

/// How long a compiled statement is meant to be kept.
enum class StatementLife : std::uint8_t { Once, Cached };

/// A compiled statement. It must not outlive its driver.
///
/// Every member but `reset` raises one of the errors of platform/database_error.h. After a failure the
/// statement can be reset and used again.
class Statement {
public:
  Statement() = default;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  virtual ~Statement() = default;

  /// The columns of the result, known before the first step. They may differ after a step when the tables
  /// have been changed since.
  virtual std::size_t columnCount() = 0;
  /// The name as the database reports it. The view lives until the next step.
  virtual std::string_view columnName(std::size_t index) = 0;
  virtual ColumnKind columnKind(std::size_t index) = 0;

  /// Binds a parameter by 0-based index. Texts are not copied: the value must live until the next `reset`.
  virtual void bind(std::size_t index, const Value& value) = 0;
  virtual std::size_t parameterCount() = 0;
  /// The type that the database expects of a parameter, as a cast names it.
  virtual std::string_view parameterType(std::size_t /*index*/) { return "TEXT"; }
  void bindAll(std::span<const Value> values) {
    std::size_t index = 0;
    for (const Value& value : values) bind(index++, value);
  }
  /// True when the step produced a row, false at the end.
  virtual bool step() = 0;
  /// A value of the current row. `kind` is that of `columnKind`, which callers keep.
  virtual Value column(std::size_t index, ColumnKind kind) = 0;
  /// Appends several values of the current row.
  virtual void appendColumns(std::span<const ColumnPlace> columns, std::vector<Value>& values) {
    for (const ColumnPlace& column : columns) values.push_back(this->column(column.index, column.kind));
  }
  /// Runs the statement to its end and resets it, also after a failure. Returns the number of changed rows.
  virtual std::int64_t run() = 0;
  /// Ends reading, so that nothing stays open across units of work. Bound values remain.
  virtual void reset() noexcept = 0;
};

/// What identifies a row of a table.
struct TableKey {
  /// The column, or pseudo column, that holds an integer per row, ascending in order of insertion; empty when
  /// there is none: the rows cannot be changed and come in any order.
  std::string row;
  /// The column that is the table's whole primary key and holds texts; empty unless the database may give the
  /// row key of a deleted row to a new one.
  std::string text;
  /// A column of the catalogue that is the row key by another name, or empty.
  std::string identity;
};

/// One open database. Not thread-safe.
class Driver {
public:
  Driver() = default;
  Driver(const Driver&) = delete;
  Driver& operator=(const Driver&) = delete;
  virtual ~Driver() = default;

  /// The constructs of this database, which live as long as the program.
  virtual const Dialect& dialect() const = 0;
  /// Compiles a statement in this database's dialect, with "?" for each parameter. Never null.
  virtual std::unique_ptr<Statement> prepare(std::string_view text, StatementLife life) = 0;
  /// `table` is the name without quotes, in any case.
  virtual TableKey keyOf(std::string_view table) = 0;
  /// The tables, in lower case, for which the database does something of its own when a row is written.
  virtual std::vector<std::string> triggeredTables() = 0;
  /// Whether a failed statement may cost the whole unit from now on, which saves a round trip per write. Then
  /// it raises `WorkLostError`.
  virtual void stakeUnit(bool /*staked*/) noexcept {}
  /// Runs an insert of one row that ends as the dialect's `returning` says. Returns the new row's key; null
  /// when the database did not take the row.
  virtual std::optional<std::int64_t> insertRow(Statement& insert) = 0;
};

/// Resets a statement at the end of a scope.
class StatementUse {
public:
  explicit StatementUse(Statement& statement) : statement_(statement) {}
  StatementUse(const StatementUse&) = delete;
  StatementUse& operator=(const StatementUse&) = delete;
  ~StatementUse() { statement_.reset(); }

private:
  Statement& statement_;
};

} // namespace qx::relational
