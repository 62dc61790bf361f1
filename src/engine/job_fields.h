// The fields of a job by name, from a row, the controls of a dialog or a record.
#pragma once

#include "engine/job_row.h"
#include "model/entry_records.h"
#include "platform/column_name.h"
#include "platform/value.h"

#include <cstddef>
#include <functional>

namespace qx {

class StagedRows;

/// Reads a field by its staging column; null for an unknown column.
using JobFields = std::function<Value(ColumnName)>;

/// The fields of the job's current row; a missing column is reported to the diagnostics.
inline JobFields fieldsOf(const JobRow& job) {
  return [&job](ColumnName column) { return job.value(column); };
}

/// The fields of the record set's current row.
inline JobFields fieldsOf(Recordset& row) {
  return [&row](ColumnName column) { return row.hasField(column) ? row.value(column) : Value::null(); };
}

/// The fields of a row of the table, which must outlive them.
JobFields fieldsOf(const StagedRows& rows, std::size_t row);

/// The fields of the record, as `AddItem` would stage them; an empty text is null.
JobFields fieldsOf(const VertragFields& record);

/// The bank code of the job: `Bankleitzahl`, else `BLZ`. Null when the job gives neither.
Value bankCode(const JobFields& job);

} // namespace qx
