// Where the records of a file of jobs go.
#pragma once

#include "model/entry_records.h"
#include "model/import_job.h"
#include "platform/column_name.h"

#include <cstdint>
#include <vector>

namespace qx::cli {

/// The columns of a record of which its object does not speak.
using Unspoken = std::vector<ColumnName>;

/// Takes each record as soon as it is finished and known to be in order. Positions are added before their
/// header. `line` is where the key stands, or the object begins; the `unspoken` columns become null.
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
