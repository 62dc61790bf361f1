// The port that stages the jobs of a whole file.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// A key or content that cannot be staged. Jobs have the numbers in which they were added, from 1.
struct KeyConflict {
  enum class Kind : std::uint8_t {
    JobTwice,      ///< two jobs of the file have the same key
    PositionTwice, ///< two positions of the file have the same key
    OtherOwner,    ///< the position belongs to another job in the database
    OtherName,     ///< the position names another job than the one that contains it
    ContentTwice,  ///< another job with the same content was handed over
  };
  Kind kind = Kind::JobTwice;
  std::string key;      ///< of the job for `ContentTwice`
  std::int64_t job = 0; ///< the later job in the file
  std::int64_t line = 0;
  std::int64_t otherJob = 0; ///< the earlier job; 0 when it is not in the file
  std::int64_t otherLine = 0;
  std::string owner; ///< the other job's key, for the last three
  std::string since; ///< the time stamp of a content that is not in the file
};

/// The result for one job of the file.
enum class StageResult : std::uint8_t { Added, Replaced, Skipped };

/// One job of the file after it was staged or skipped.
struct StagedJob {
  std::string jobId;
  std::int16_t jobType = 0;
  StageResult result = StageResult::Added;
  /// Of a skipped job the stored row, else null: `JobType`, `Kundennummer`, `Vertragsnummer`, `Bemerkung`;
  /// `Seit`, the time stamp of its state, and `Inhalt`, which is 1 when the content differs from the one that
  /// was handed over. Both are null when that is not known.
  Recordset* stored = nullptr;
};

struct StageCounts {
  std::int64_t staged = 0;
  std::int64_t skipped = 0;
  std::int64_t repeated = 0; ///< of the staged ones, those whose content was handed over under another key
};

/// What `copy` does with the jobs.
struct CopyOrder {
  bool again = false;   ///< done jobs too
  bool tryOnly = false; ///< only finds out what would be done
  bool unique = false;  ///< refuses repeated contents
  std::string now{};    ///< the time stamp under which contents are remembered
};

/// Loads all jobs of a file without touching the staging tables, then copies them in one unit of work. The
/// calls come in this order: `begin`, the rows of each job (its positions first), `finish`, `conflicts`,
/// `copy`, `forEach`.
///
/// Whatever database implements it keeps these promises:
/// - Until `copy` nobody is kept waiting and nothing of the file is visible. `copy` is one unit: after any
///   failure, or when the program is killed at any moment, the staging tables hold nothing of the file.
/// - Memory does not grow with the number of jobs.
/// - Job and position keys are compared without regard to case, both within the file and with stored ones.
/// - A replaced job keeps its place among the stored jobs. All its columns are overwritten, those that the
///   file does not give with null, and its positions are deleted before the new ones are added.
/// - Jobs and positions are added in the order of the file. A position gets the key of its job, whatever it
///   names itself.
/// - The content of a staged job is remembered under its key, also when the job is gone, until it is staged
/// with
///   another content. One whose content is known under another key, or stands before in the file, is
///   repeated. Skipped jobs do not count. Of two programs that stage the same content at once, one is told.
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
  /// Whether the database remembers contents: one without the table never tells of any. After `begin`.
  virtual bool remembersContents() const = 0;
  /// A new row of the table of positions, valid until `addPosition`.
  virtual RowValues& newPosition() = 0;
  /// Adds it to the job that comes next. `line` is its line in the file.
  virtual void addPosition(std::int64_t line) = 0;
  /// A new row of the table of jobs, valid until `addJob`.
  virtual RowValues& newJob() = 0;
  /// `content` has the same hash for the same content; empty: it is not compared.
  virtual void addJob(std::int64_t line, std::string_view content) = 0;
  /// Takes back the positions that have been added since the last job.
  virtual void dropPositions() = 0;
  /// After the last job.
  virtual void finish() = 0;

  /// The first `most` conflicts between the jobs of the file: keys that stand twice, and positions that name
  /// another job than their own. Those of one kind stand together, in the order of the file.
  virtual std::vector<KeyConflict> conflicts(std::int64_t most) = 0;
  /// Leaves out jobs with their positions, after `finish`.
  virtual void leaveOut(const std::vector<std::int64_t>& jobs) = 0;

  /// Copies all jobs, but skips those that are done unless told otherwise. Conflicts with stored jobs, and
  /// repeated contents when those are refused, of which it returns the first `most`, leave everything
  /// unchanged. While another program holds the database, waits as long as `wait` decides. Inside an open
  /// unit of work it is a part of that. After conflicts, a `ConflictError` or a try it may be called again.
  virtual std::vector<KeyConflict> copy(BusyWait& wait, CopyOrder order, std::int64_t most) = 0;
  /// After `copy`.
  virtual StageCounts counts() const = 0;
  /// After `copy`: the jobs that had another code before, and new ones in another state than waiting. Unlike
  /// all else they are kept in memory.
  struct ChangedJob {
    std::string jobId;
    std::int16_t jobType = 0;
  };
  const std::vector<ChangedJob>& changed() const { return changed_; }
  /// The jobs in the order of the file, after `copy`.
  using Visitor = std::function<void(const StagedJob& job)>;
  virtual void forEach(const Visitor& visit) = 0;
  /// The repeated jobs in the order of the file, after `copy`.
  using RepetitionVisitor = std::function<void(const KeyConflict& repetition)>;
  virtual void forEachRepetition(const RepetitionVisitor& visit) = 0;

  /// Is told now and then how many of all rows `copy` has reached.
  using Progress = std::function<void(std::uintmax_t done, std::uintmax_t total)>;
  void observe(Progress progress) { progress_ = std::move(progress); }

protected:
  void report(std::int64_t done, std::int64_t total) const {
    if (progress_) progress_(static_cast<std::uintmax_t>(done), static_cast<std::uintmax_t>(total));
  }

  std::vector<ChangedJob> changed_;

private:
  Progress progress_;
};

} // namespace qx
