// Stages a file of jobs through temporary tables.
#pragma once

#include "adapters/sqlite/temporary_rows.h"
#include "platform/bulk_staging.h"

#include <optional>
#include <string>
#include <string_view>

namespace qx::sqlite {

/// Keeps the rows in temporary tables of the connection, which SQLite moves to a file when they grow.
class SqliteBulkStaging final : public BulkStaging {
public:
  /// Creates the temporary tables. The connection and its driver outlive the object.
  SqliteBulkStaging(Connection& connection, relational::Driver& driver);

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
  void findExisting(bool again);
  std::optional<KeyConflict> ownedInFile();
  std::optional<KeyConflict> ownedByOthers();
  std::optional<KeyConflict> firstOwned(const Sql& query, KeyConflict::Kind kind);
  void copyHeaders(std::int64_t expected);
  static void requireTaken(std::int64_t taken, std::int64_t expected, std::string_view what);
  static void inPortions(std::int64_t rows,
                         const std::function<void(std::int64_t from, std::int64_t to)>& copy);
  void copyPositions(bool all);

  Connection& connection_;
  relational::Driver& driver_;
  std::optional<TemporaryRows> headers_;
  std::optional<TemporaryRows> positions_;
  KeyRepetition jobKeys_;
  KeyRepetition positionKeys_;
  std::string namedJob_;     ///< by positions that have been added since the last job
  bool othersNamed_ = false; ///< by positions, as far as equal texts tell
  std::int64_t jobs_ = 0;
  std::int64_t positionCount_ = 0;
  StageCounts counts_;
};

} // namespace qx::sqlite
