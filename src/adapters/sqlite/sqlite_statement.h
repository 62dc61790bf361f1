// A prepared statement of SQLite.
#pragma once

#include "adapters/sql/driver.h"

#include <span>
#include <vector>

struct sqlite3_stmt;
struct sqlite3_value;

namespace qx::sqlite {

class DatabaseHandle;

using relational::ColumnKind;
using relational::StatementLife;

/// Owns a compiled statement.
class SqliteStatement final : public relational::Statement {
public:
  /// Raises when SQLite refuses the text.
  SqliteStatement(const DatabaseHandle& database, std::string_view text, StatementLife life);
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;
  ~SqliteStatement() override;

  std::size_t columnCount() override;
  std::string_view columnName(std::size_t index) override;
  ColumnKind columnKind(std::size_t index) override;
  void bind(std::size_t index, const Value& value) override;
  std::size_t parameterCount() override;
  bool step() override;
  Value column(std::size_t index, ColumnKind kind) override;
  void appendColumns(std::span<const relational::ColumnPlace> columns, std::vector<Value>& values) override;
  std::int64_t run() override;
  void reset() noexcept override;

private:
  Value valueOf(sqlite3_value* held, ColumnKind kind) const;

  const DatabaseHandle& database_;
  sqlite3_stmt* statement_ = nullptr;
};

} // namespace qx::sqlite
