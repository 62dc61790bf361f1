// Receives the records of a file of jobs.
#pragma once

#include "model/entry_records.h"
#include "model/import_job.h"
#include "platform/column_name.h"

#include <cstdint>
#include <vector>

namespace qx::cli {

/// The columns of a record that its object does not mention.
using Unspoken = std::vector<ColumnName>;

/// Receives each record as soon as it is complete and valid. Positions are added before their header. `line`
/// is that of the key or of the object's beginning; the `unspoken` columns become null.
class StagedRecords {
public:
  virtual ~StagedRecords() = default;
  virtual void add(const AuftragsPosFields& position, std::int64_t line, const Unspoken& unspoken) = 0;
  virtual void add(const ImportJobSubItem& position, std::int64_t line, const Unspoken& unspoken) = 0;
  virtual void add(const KundeFields& job, std::int64_t line, const Unspoken& unspoken) = 0;
  virtual void add(const VertragFields& job, std::int64_t line, const Unspoken& unspoken) = 0;
  virtual void add(const AuftragFields& job, std::int64_t line, const Unspoken& unspoken) = 0;
};

} // namespace qx::cli
