// The fields of a job by name, wherever they stand: in a row, in the controls of a dialog or in a record.
#pragma once

#include "engine/job_row.h"
#include "model/entry_records.h"
#include "platform/column_name.h"
#include "platform/value.h"

#include <cstddef>
#include <functional>

namespace qx {

class StagedRows;

/// Reads a field by its staging column; null for a column that there is not.
using JobFields = std::function<Value(ColumnName)>;

/// Those of the row on which the job stands; a column that the table lacks is told to the diagnostics.
inline JobFields fieldsOf(const JobRow& job) {
  return [&job](ColumnName column) { return job.value(column); };
}

/// Those of the row on which the record set stands.
inline JobFields fieldsOf(Recordset& row) {
  return [&row](ColumnName column) { return row.hasField(column) ? row.value(column) : Value::null(); };
}

/// Those of a row of the table, which must outlive them.
JobFields fieldsOf(const StagedRows& rows, std::size_t row);

/// Those of the record, as `AddItem` would stage them; an empty text is null.
JobFields fieldsOf(const VertragFields& record);

/// The bank code that the job gives: `Bankleitzahl`, else `BLZ`. Null when the sender speaks of neither.
Value bankCode(const JobFields& job);

} // namespace qx
