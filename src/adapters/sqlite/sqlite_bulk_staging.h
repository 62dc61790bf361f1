// Stages a file of jobs through temporary tables.
#pragma once

#include "adapters/sql/staged_contents.h"
#include "adapters/sqlite/temporary_rows.h"
#include "platform/bulk_staging.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::sqlite {

/// Keeps the rows in temporary tables of the connection, which SQLite moves to a file when they grow.
class SqliteBulkStaging final : public BulkStaging {
public:
  /// Creates the temporary tables. The connection and its driver outlive the object.
  SqliteBulkStaging(Connection& connection, relational::Driver& driver);

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
  void copyHeaders(std::int64_t expected);
  static void inPortions(std::int64_t rows,
                         const std::function<void(std::int64_t from, std::int64_t to)>& copy);
  void copyPositions(bool all);

  Connection& connection_;
  relational::Driver& driver_;
  std::optional<TemporaryRows> headers_;
  std::optional<TemporaryRows> positions_;
  relational::StagedContents contents_;
  KeyRepetition jobKeys_;
  KeyRepetition contentKeys_;
  KeyRepetition positionKeys_;
  std::int64_t earlierPositions_ = 0; ///< those of the jobs that have been added
  std::string namedJob_;              ///< by positions that have been added since the last job
  bool othersNamed_ = false;          ///< by positions, as far as equal texts tell
  std::int64_t jobs_ = 0;
  std::int64_t positionCount_ = 0;
  bool leftOut_ = false;
  StageCounts counts_;
};

} // namespace qx::sqlite
