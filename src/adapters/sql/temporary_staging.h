// Stages a file of jobs on a database server.
#pragma once

#include "platform/bulk_staging.h"

#include <memory>
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
  RowValues& newPosition() override;
  void addPosition(std::int64_t line) override;
  RowValues& newJob() override;
  void addJob(std::int64_t line) override;
  std::optional<KeyConflict> finish() override;
  std::optional<KeyConflict> copy(BusyWait& wait, bool again) override;
  StageCounts counts() const override { return counts_; }
  void forEach(const Visitor& visit) override;

private:
  std::optional<KeyConflict> twice(const Sql& query, KeyConflict::Kind kind);
  std::optional<KeyConflict> firstOwned(const Sql& query, KeyConflict::Kind kind);
  void findExisting(bool again);
  void copyHeaders();
  void copyPositions();
  void requireTaken(std::int64_t taken, const Sql& count, std::string_view what);

  Connection& connection_;
  std::vector<std::string> headerColumns_;
  std::vector<std::string> positionColumns_;
  std::optional<RowBatch> headers_;
  std::optional<RowBatch> positions_;
  std::int64_t jobs_ = 0;
  std::int64_t positionCount_ = 0;
  StageCounts counts_;
  bool filling_ = false; ///< the unit of work that fills the temporary tables is open
};

} // namespace qx::relational
