// The current staged job of a cursor.
#pragma once

#include "model/job_codes.h"
#include "platform/database.h"
#include "platform/system.h"

#include <cstdint>
#include <set>
#include <string>

namespace qx {

/// Remembers which columns a staging table lacks, so that each is reported to the diagnostics once.
class MissingColumns {
public:
  explicit MissingColumns(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}
  void report(ColumnName column);

private:
  Diagnostics& diagnostics_;
  std::set<std::uint64_t> reported_;
};

/// Reads and writes the current row of a cursor on `ImportKopf`. A column that the table lacks reads as null
/// and is not written. The cursor and the record of missing columns must outlive it.
class JobRow {
public:
  JobRow(Recordset& rows, MissingColumns& missing) : rows_(rows), missing_(missing) {}

  const Value& value(ColumnName column) const;
  Recordset& row() const { return rows_; }
  bool has(ColumnName column) const { return rows_.hasField(column); }
  std::string text(ColumnName column) const { return value(column).text(); }
  /// The value of the first column that is not empty.
  std::string firstOf(ColumnName first, ColumnName second) const;
  std::int16_t jobType() const { return jobCode(value("JobType")); }
  /// Whether the clerk has released the job with its warnings or errors.
  bool released() const { return value("ProcessWarning").integer().value_or(0) != 0; }

  void set(ColumnName column, Value value);
  void update() { rows_.update(); }
  void cancelUpdate() { rows_.cancelUpdate(); }
  /// Drops pending values and reads the row again, after a savepoint was rolled back. False when the row is
  /// gone.
  bool reread() {
    rows_.cancelUpdate();
    return rows_.resync();
  }

private:
  Recordset& rows_;
  MissingColumns& missing_;
};

} // namespace qx
