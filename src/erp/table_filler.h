// Adds rows to one table.
#pragma once

#include "platform/database.h"

#include <initializer_list>
#include <memory>
#include <string_view>

namespace qx::erp {

struct Cell {
  ColumnName column;
  Value value;
};

/// Appends rows; unnamed columns get their default.
class TableFiller {
public:
  TableFiller(Connection& connection, std::string_view table)
      : rows_(connection.open(sql("Select * From "_sql, name(table), " Where 1 = 0"_sql))) {}

  void add(std::initializer_list<Cell> cells) {
    begin(cells);
    finish();
  }
  /// A row in several steps: `begin`, any number of `set`, `finish`.
  void begin(std::initializer_list<Cell> cells) {
    rows_->addNew();
    set(cells);
  }
  void set(std::initializer_list<Cell> cells) {
    for (const Cell& cell : cells) rows_->set(cell.column, cell.value);
  }
  void finish() { rows_->update(); }

private:
  std::unique_ptr<Recordset> rows_;
};

} // namespace qx::erp
