// Stages a file of jobs on a database server.
#pragma once

#include "adapters/sql/staged_contents.h"
#include "platform/bulk_staging.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::relational {

/// Collects rows for one table and adds many of them with one statement.
class RowBatch final : public RowValues {
public:
  RowBatch(Connection& connection, std::string_view table, std::vector<std::string> columns);

  void set(ColumnName column, Value value) override;
  /// Begins a new row; columns that are not set are null.
  void beginRow();
  void endRow();
  /// Adds the rows that have been collected.
  void flush();
  /// Takes back the last rows as far as they have not been added yet. Returns how many those are.
  std::size_t dropLast(std::size_t rows);

private:
  Connection& connection_;
  std::string table_;
  std::vector<std::string> columns_;
  std::vector<Value> values_; ///< row after row
  std::size_t rowsPerStatement_;
};

/// Keeps the rows in temporary tables of the session, which only this program sees, and copies them by a few
/// statements.
class TemporaryStaging final : public BulkStaging {
public:
  /// The connection outlives the object.
  explicit TemporaryStaging(Connection& connection);
  TemporaryStaging(const TemporaryStaging&) = delete;
  TemporaryStaging& operator=(const TemporaryStaging&) = delete;
  ~TemporaryStaging() override;

  void begin() override;
  bool remembersContents() const override { return contents_.remembered(); }
  RowValues& newPosition() override;
  void addPosition(std::int64_t line) override;
  RowValues& newJob() override;
  void addJob(std::int64_t line, std::string_view content) override;
  void dropPositions() override;
  void finish() override;
  std::vector<KeyConflict> conflicts(std::int64_t most) override;
  void leaveOut(const std::vector<std::int64_t>& jobs) override;
  std::vector<KeyConflict> copy(BusyWait& wait, CopyOrder order, std::int64_t most) override;
  StageCounts counts() const override { return counts_; }
  void forEach(const Visitor& visit) override;
  void forEachRepetition(const RepetitionVisitor& visit) override { contents_.forEach(visit); }

private:
  void findExisting(bool again);
  void copyHeaders();
  void copyPositions();
  std::int64_t counted(const Sql& count);

  Connection& connection_;
  StagedContents contents_;
  std::vector<std::string> headerColumns_;
  std::vector<std::string> positionColumns_;
  std::optional<RowBatch> headers_;
  std::optional<RowBatch> positions_;
  std::int64_t jobs_ = 0;
  std::int64_t positionCount_ = 0;
  std::int64_t earlierPositions_ = 0; ///< those of the jobs that have been added
  StageCounts counts_;
  bool filling_ = false; ///< the unit of work that fills the temporary tables is open
};

} // namespace qx::relational
