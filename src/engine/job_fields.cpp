#include "engine/job_fields.h"

#include "engine/job_editing.h"
#include "store/staging_writer.h"

#include <utility>

namespace qx {

JobFields fieldsOf(const StagedRows& rows, std::size_t row) {
  return [&rows, row](ColumnName column) { return rows.at(row, column); };
}

JobFields fieldsOf(const VertragFields& record) {
  return [&record](ColumnName column) -> Value {
    for (const auto& field : vertragFields) {
      if (!field.stored() || ColumnName(field.column) != column) continue;
      Value stored = field.visit(record, [](const auto& property) { return Value(property); });
      const bool open = column == ColumnName("Vertragsende") && stored.textView() == openContractEnd;
      return open ? Value::null() : emptyToNull(std::move(stored));
    }
    return Value::null();
  };
}

Value bankCode(const JobFields& job) {
  Value own = job("Bankleitzahl");
  if (!own.isEmpty()) return own;
  Value other = job("BLZ");
  return other.isNull() ? own : other;
}

} // namespace qx
