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
  /// Appends the statement's current row.
  void appendRow(Statement& statement, std::vector<Value>& values) const {
    statement.appendColumns(places_, values);
  }
  /// True for a column of the table, false for a computed one.
  bool stored(std::size_t index) const { return columns_[index].stored; }
  ColumnKind kind(std::size_t index) const { return places_[index].kind; }
  bool has(std::string_view column) const { return find(ColumnName(column)) < size(); }
  bool hasAll(const RowShape& others) const {
    return std::ranges::all_of(others.columns_,
                               [this](const Column& other) { return findHash(other.hash) < size(); });
  }
  /// The same columns of a statement that has fewer before them.
  RowShape without(std::uint32_t leading) const;
  /// The index of a column, or `size()`.
  std::size_t find(ColumnName column) const { return findHash(column.hash()); }
  /// The index of another shape's column, or `size()`.
  std::size_t find(const RowShape& other, std::size_t index) const {
    return findHash(other.columns_[index].hash);
  }
  /// The number of columns of the statement, hidden ones included.
  std::size_t width() const { return width_; }

private:
  struct Column {
    std::string name;
    std::uint64_t hash; ///< of the name
    bool stored;
  };
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t index = 0;
    bool used = false;
  };

  std::size_t findHash(std::uint64_t hash) const;

  std::vector<Column> columns_;
  std::vector<ColumnPlace> places_; ///< of the columns in the statement
  std::vector<Slot> slots_;         ///< open addressing, a power of two long
  std::size_t width_;
};

} // namespace qx::relational
