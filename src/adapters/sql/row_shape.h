// The columns of a result.
#pragma once

#include "adapters/sql/driver.h"
#include "adapters/sql/spelling.h"
#include "platform/column_name.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx::relational {

/// What is known of a result before its columns are read.
struct ResultLayout {
  int hidden = 0;                    ///< leading columns that serve the cursor only
  bool wholeRows = false;            ///< `*` lists columns, and with them a row key that the table declares
  std::vector<std::string> computed; ///< the names of columns that are no column of the table
  bool aggregate = false;            ///< one row is computed from many
};

/// The columns that callers see: names, kinds and the index of names.
class RowShape {
public:
  RowShape(Statement& statement, const ResultLayout& layout, const Dialect& dialect,
           const Spelling& spelling);

  std::size_t size() const { return columns_.size(); }
  std::string_view name(std::size_t index) const { return columns_[index].name; }
  /// Reads a column of the statement's current row.
  Value read(Statement& statement, std::size_t index) const {
    return statement.column(columns_[index].place, columns_[index].kind);
  }
  /// True for a column of the table, false for a computed one.
  bool stored(std::size_t index) const { return columns_[index].stored; }
  ColumnKind kind(std::size_t index) const { return columns_[index].kind; }
  bool has(std::string_view column) const { return find(ColumnName(column)) < size(); }
  bool hasAll(const RowShape& others) const {
    return std::ranges::all_of(others.columns_, [this](const Column& other) { return has(other.name); });
  }
  /// The same columns of a statement that has fewer before them.
  RowShape without(std::uint32_t leading) const;
  /// The index of a column, or `size()`.
  std::size_t find(ColumnName column) const;
  /// The number of columns of the statement, hidden ones included.
  std::size_t width() const { return width_; }

private:
  struct Column {
    std::string name;
    std::uint32_t place; ///< index in the statement
    ColumnKind kind;
    bool stored;
  };
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t index = 0;
    bool used = false;
  };

  std::vector<Column> columns_;
  std::vector<Slot> slots_; ///< open addressing, a power of two long
  std::size_t width_;
};

} // namespace qx::relational
