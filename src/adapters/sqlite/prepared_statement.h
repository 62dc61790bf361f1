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

/// How a declared column type is given back.
enum class ColumnKind : std::uint8_t { Plain, Double, Currency, Boolean };

/// The columns of a result: names, kinds and where to find a name.
class RowShape {
public:
  /// `hidden` leading columns are left out.
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

/// Owns a compiled statement. It is reset after every use, so that none stays open across units of work.
class PreparedStatement {
public:
  PreparedStatement() = default;
  /// Raises when SQLite refuses the text.
  PreparedStatement(const DatabaseHandle& database, std::string_view text, bool lasting);
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

  /// Binds by 1-based index. Texts are not copied: the value outlives the next `reset`.
  void bind(int index, const Value& value);
  void bindAll(std::span<const Value> values);
  /// True when the step gave a row, false at the end; raises for everything else.
  bool step();
  void reset() noexcept;
  Value column(int index, ColumnKind kind) const;

private:
  const DatabaseHandle* database_ = nullptr;
  sqlite3_stmt* statement_ = nullptr;
};

/// Resets a statement at the end of a scope, whatever happens in it.
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
