// Stages a file of jobs through temporary tables.
#pragma once

#include "platform/bulk_staging.h"

#include <memory>
#include <string_view>

namespace qx::sqlite {

/// Keeps the rows in temporary tables of the connection, which SQLite moves to a file when they grow.
class SqliteBulkStaging final : public BulkStaging {
public:
  /// Creates the temporary tables; the connection, which must be to SQLite, outlives the object.
  explicit SqliteBulkStaging(Connection& connection);

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
  void forgetWritten();
  std::optional<KeyConflict> twice(const Sql& query, KeyConflict::Kind kind);
  void findExisting(bool again);
  std::optional<KeyConflict> ownedInFile();
  std::optional<KeyConflict> ownedByOthers();
  std::optional<KeyConflict> firstOwned(const Sql& query, KeyConflict::Kind kind);
  void copyHeaders();
  void requireTaken(std::int64_t taken, const Sql& count, std::string_view what);
  static void inPortions(std::int64_t rows,
                         const std::function<void(std::int64_t from, std::int64_t to)>& copy);
  void copyPositions();

  Connection& connection_;
  std::unique_ptr<Recordset> headers_;
  std::unique_ptr<Recordset> positions_;
  std::int64_t jobs_ = 0;
  std::int64_t positionCount_ = 0;
  int written_ = 0;
  StageCounts counts_;
};

} // namespace qx::sqlite
