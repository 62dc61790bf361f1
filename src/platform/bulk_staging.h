// The port that stages the jobs of a whole file.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace qx {

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

/// Loads all jobs of a file without touching the staging tables, then copies them in one unit of work. The
/// calls come in this order: `begin`, the rows of each job (its positions first), `finish`, `copy`,
/// `forEach`.
///
/// Whatever database implements it keeps these promises:
/// - Until `copy` nobody is kept waiting and nothing of the file is visible. `copy` is one unit: after any
///   failure, or when the program is killed at any moment, the staging tables hold nothing of the file.
/// - Memory does not grow with the number of jobs.
/// - Job and position keys are compared without regard to case, both within the file and with stored ones.
/// - A replaced job keeps its place among the stored jobs. All its columns are overwritten, those that the
/// file
///   does not give with null, and its positions are deleted before the new ones are added.
/// - Jobs and positions are added in the order of the file. A position gets the key of its job, whatever it
///   names itself.
/// - When fewer rows than expected have arrived, as after a trigger has dropped some, `copy` raises
///   `StatementError` and nothing is staged.
///
/// The connection outlives the object and is used for nothing else from `begin` to `finish`. After any
/// other failure the object can only be destroyed.
class BulkStaging {
public:
  BulkStaging() = default;
  BulkStaging(const BulkStaging&) = delete;
  BulkStaging& operator=(const BulkStaging&) = delete;
  virtual ~BulkStaging() = default;

  virtual void begin() = 0;
  /// A new row of the table of positions, valid until `addPosition`.
  virtual RowValues& newPosition() = 0;
  /// Adds it to the job that comes next. `line` is its line in the file.
  virtual void addPosition(std::int64_t line) = 0;
  /// A new row of the table of jobs, valid until `addJob`.
  virtual RowValues& newJob() = 0;
  virtual void addJob(std::int64_t line) = 0;
  /// After the last job. Null when no key stands twice and every position names its own job or none.
  virtual std::optional<KeyConflict> finish() = 0;

  /// Copies all jobs, but skips those that are done unless `again`. A conflict leaves everything unchanged.
  /// Inside an open unit of work it is a part of that.
  /// While another program holds the database, waits as long as `wait` decides. After a `ConflictError` it
  /// may be called again.
  virtual std::optional<KeyConflict> copy(BusyWait& wait, bool again) = 0;
  /// After `copy`.
  virtual StageCounts counts() const = 0;
  /// The jobs in the order of the file, after `copy`.
  using Visitor = std::function<void(const std::string& jobId, std::int16_t jobType, StageResult result)>;
  virtual void forEach(const Visitor& visit) = 0;
};

} // namespace qx
