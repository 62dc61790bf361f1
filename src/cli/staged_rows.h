// Passes the records of a file of jobs to the database.
#pragma once

#include "cli/staged_records.h"
#include "platform/bulk_staging.h"
#include "store/staging_writer.h"

#include <cstdint>

namespace qx::cli {

/// Hands each record on as a row. `jobs` outlives it.
class StagedRows final : public StagedRecords {
public:
  explicit StagedRows(BulkStaging& jobs) : jobs_(jobs) {}

  void add(const AuftragsPosFields& position, std::int64_t line, const Unspoken& unspoken) override {
    addPosition(position, line, unspoken);
  }
  void add(const ImportJobSubItem& position, std::int64_t line, const Unspoken& unspoken) override {
    addPosition(position, line, unspoken);
  }
  void add(const KundeFields& job, std::int64_t line, const Unspoken& unspoken) override {
    addJob(job, line, unspoken);
  }
  void add(const VertragFields& job, std::int64_t line, const Unspoken& unspoken) override {
    addJob(job, line, unspoken);
  }
  void add(const AuftragFields& job, std::int64_t line, const Unspoken& unspoken) override {
    addJob(job, line, unspoken);
  }

private:
  template <class Record>
  static void fill(RowValues& row, const Record& record, const Unspoken& unspoken) {
    setStaged(row, record);
    for (const ColumnName column : unspoken) row.set(column, Value::null());
  }
  template <class Record>
  void addPosition(const Record& position, std::int64_t line, const Unspoken& unspoken) {
    fill(jobs_.newPosition(), position, unspoken);
    jobs_.addPosition(line);
  }
  template <class Record>
  void addJob(const Record& job, std::int64_t line, const Unspoken& unspoken) {
    fill(jobs_.newJob(), job, unspoken);
    jobs_.addJob(line);
  }

  BulkStaging& jobs_;
};

} // namespace qx::cli
