// Adds rows to a temporary table.
#pragma once

#include "adapters/sql/driver.h"
#include "adapters/sql/row_shape.h"
#include "platform/database.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace qx::sqlite {

/// The next row of a table. Columns that it is not given are null.
class TemporaryRows final : public RowValues {
public:
  /// The driver outlives the object.
  TemporaryRows(relational::Driver& driver, std::string_view table);

  /// Raises `StatementError` when the table has no such column.
  void set(ColumnName column, Value value) override;
  const Value& value(ColumnName column) const { return values_[place(column)]; }
  /// Adds the row. All columns are null again afterwards.
  void add();

private:
  std::size_t place(ColumnName column) const;

  relational::RowShape shape_;
  std::unique_ptr<relational::Statement> insert_;
  std::vector<Value> values_;
  std::vector<bool> bound_; ///< the parameters that hold something
};

/// Whether keys may stand twice, as far as their hashes without regard to case tell.
class KeyRepetition {
public:
  void add(std::string_view key);
  /// Forgets all but the first keys.
  void keepFirst(std::int64_t count) { hashes_.resize(static_cast<std::size_t>(count)); }
  /// False when they are certainly all different.
  bool possible();

private:
  std::vector<std::uint64_t> hashes_;
};

} // namespace qx::sqlite
