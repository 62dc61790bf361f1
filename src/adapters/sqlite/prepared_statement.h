// A prepared statement and the shape of its rows.
#pragma once

#include "platform/column_name.h"
#include "platform/value.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3_stmt;

namespace qx::sqlite {

class DatabaseHandle;
class PreparedStatement;

/// The kind of value that a declared column type yields.
enum class ColumnKind : std::uint8_t { Plain, Double, Currency, Boolean };

/// The columns of a result: names, kinds and the index of names.
class RowShape {
public:
  /// Omits `hidden` leading columns.
  RowShape(const PreparedStatement& statement, int hidden);

  std::size_t size() const { return names_.size(); }
  std::string_view name(std::size_t index) const { return names_[index]; }
  ColumnKind kind(std::size_t index) const { return kinds_[index]; }
  /// True for a column of the table, false for a computed one.
  bool stored(std::size_t index) const { return stored_[index]; }
  /// The index of a column, or `size()`.
  std::size_t find(ColumnName column) const;

private:
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t index = 0;
    bool used = false;
  };

  std::vector<std::string> names_;
  std::vector<ColumnKind> kinds_;
  std::vector<bool> stored_;
  std::vector<Slot> slots_; ///< open addressing, a power of two long
};

/// How long a compiled statement is meant to be kept.
enum class StatementLife { Once, Cached };

/// Owns a compiled statement, which is reset after every use so that none stays open across units of work.
class PreparedStatement {
public:
  PreparedStatement() = default;
  /// Raises when SQLite refuses the text.
  PreparedStatement(const DatabaseHandle& database, std::string_view text, StatementLife life);
  PreparedStatement(PreparedStatement&& other) noexcept;
  PreparedStatement& operator=(PreparedStatement&& other) noexcept;
  PreparedStatement(const PreparedStatement&) = delete;
  PreparedStatement& operator=(const PreparedStatement&) = delete;
  ~PreparedStatement();

  explicit operator bool() const { return statement_ != nullptr; }
  int columnCount() const;
  const char* columnName(int index) const;
  /// The type that the table declares; null for a computed column.
  const char* declaredType(int index) const;

  /// Binds by 1-based index. Texts are not copied: the value must live until the next `reset`.
  void bind(int index, const Value& value);
  void bindAll(std::span<const Value> values);
  /// True when the step produced a row, false at the end; otherwise raises.
  bool step();
  void reset() noexcept;
  Value column(int index, ColumnKind kind) const;

private:
  const DatabaseHandle* database_ = nullptr;
  sqlite3_stmt* statement_ = nullptr;
};

/// Resets a statement at the end of a scope.
class StatementUse {
public:
  explicit StatementUse(PreparedStatement& statement) : statement_(statement) {}
  StatementUse(const StatementUse&) = delete;
  StatementUse& operator=(const StatementUse&) = delete;
  ~StatementUse() { statement_.reset(); }

private:
  PreparedStatement& statement_;
};

} // namespace qx::sqlite
