// A job or position that was kept with every column before it was deleted.
#pragma once

#include "cli/stage_value.h"
#include "platform/database.h"
#include "store/kept_jobs.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// Takes the columns of one row of a staging table as they are.
class KeptRow {
public:
  /// Reads the columns of the table.
  KeptRow(Connection& connection, const Sql& emptySelect);

  void begin();
  /// Null when the column was accepted, otherwise what is wrong.
  std::optional<ValueFault> add(const StageProperty& property);

  /// A text column; empty when it was not given.
  std::string text(std::string_view column) const;
  std::optional<std::int64_t> whole(std::string_view column) const;
  /// The line of a column; 0 when it was not given.
  std::int64_t line(std::string_view column) const;
  /// Sets all columns, those that were not given to null.
  void fill(RowValues& row) const;

private:
  struct Column {
    std::string name;
    StageValue content;
    std::int64_t line = 0;
  };

  const Column* find(std::string_view name) const;

  std::vector<Column> columns_;
};

} // namespace qx::cli
