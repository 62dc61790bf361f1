// Where the records of a file of jobs go.
#pragma once

#include "model/entry_records.h"
#include "model/import_job.h"

#include <cstdint>

namespace qx::cli {

/// Takes each record as soon as it is finished and known to be in order. Positions are added before their
/// header. `line` is where the key stands, or the object begins.
class StagedRecords {
public:
  virtual ~StagedRecords() = default;
  virtual void add(const AuftragsPosFields& position, std::int64_t line) = 0;
  virtual void add(const ImportJobSubItem& position, std::int64_t line) = 0;
  virtual void add(const KundeFields& job, std::int64_t line) = 0;
  virtual void add(const VertragFields& job, std::int64_t line, bool hasInterval) = 0;
  virtual void add(const AuftragFields& job, std::int64_t line) = 0;
};

} // namespace qx::cli
