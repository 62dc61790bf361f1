// Temporary tables that hold a file's jobs until all of them have been checked.
#pragma once

#include "cli/staged_records.h"
#include "platform/database.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qx::cli {

/// A job or position key that cannot be staged.
struct KeyConflict {
  enum class Kind : std::uint8_t {
    JobTwice,      ///< two jobs of the file have the same key
    PositionTwice, ///< two positions of the file have the same key
    OtherOwner,    ///< the position belongs to another job in the database
    OtherName,     ///< the position names another job than the one that contains it
  };
  Kind kind = Kind::JobTwice;
  std::string key;
  std::int64_t job = 0; ///< number of the later job in the file
  std::int64_t line = 0;
  std::int64_t otherJob = 0; ///< number of the earlier job; 0 when it is not in the file
  std::int64_t otherLine = 0;
  std::string owner; ///< the other job's key, for the last two
};

/// The result for one job of the file.
enum class StageResult : std::uint8_t { Added, Replaced, Skipped };

struct StageCounts {
  std::int64_t staged = 0;
  std::int64_t skipped = 0;
};

/// The jobs are first loaded, without touching the database, and then copied in one unit of work. Rows are
/// stored as the entry objects store them. Written for SQLite.
class StagingArea final : public StagedRecords {
public:
  explicit StagingArea(Connection& connection);

  /// Before the first record.
  void begin();
  void add(const AuftragsPosFields& position, std::int64_t line, const Unspoken& unspoken) override;
  void add(const ImportJobSubItem& position, std::int64_t line, const Unspoken& unspoken) override;
  void add(const KundeFields& job, std::int64_t line, const Unspoken& unspoken) override;
  void add(const VertragFields& job, std::int64_t line, const Unspoken& unspoken) override;
  void add(const AuftragFields& job, std::int64_t line, const Unspoken& unspoken) override;
  /// After the last job. Null when there are no duplicate keys.
  std::optional<KeyConflict> finish();

  /// Copies all jobs, but skips those that are done unless `again`. A conflict leaves everything unchanged.
  std::optional<KeyConflict> copy(BusyWait& wait, bool again);
  StageCounts counts() const { return counts_; }
  /// The jobs in the order of the file, after `copy`.
  using Visitor = std::function<void(const std::string& jobId, std::int16_t jobType, StageResult result)>;
  void forEach(const Visitor& visit);

private:
  template <class Record>
  void addPosition(const Record& position, std::int64_t line, const Unspoken& unspoken);
  template <class Record>
  void addJob(const Record& job, std::int64_t line, const Unspoken& unspoken);
  void endPosition(std::int64_t line);
  void endJob(std::int64_t line);
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

} // namespace qx::cli
