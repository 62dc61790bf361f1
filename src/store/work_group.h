// Groups the units of work of a run or an import.
#pragma once

#include "platform/environment.h"
#include "store/state_feed.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace qx {

/// What `WorkGroup` does with each of many jobs.
struct JobWalk {
  /// Processes the job of this index, inside the open group.
  std::function<void(std::size_t at)> take;
  /// Called for a job that lost its unit of work while alone in it. True to process it once more, false to go
  /// on with the next one.
  std::function<bool(std::size_t at, const WorkLostError& loss)> lost;
  /// Checked before each job.
  std::function<bool()> stopped;
  /// Called with the jobs that a new group may hold, so that what they will read can be read at once. Without
  /// it the writes of a group are not collected.
  std::function<void(std::size_t first, std::size_t count)> foresee{};
};

/// Commits jobs in groups and lets other programs use the database in between.
///
/// What the next jobs will read is read ahead for no more of them than the last groups could hold.
///
/// A job's actions (results, message boxes) are held back until the commit that makes them true, and the
/// changes of states are written right before it; when the group is lost or abandoned both are dropped. On a
/// host's connection no unit is begun or committed and this happens at the end of each job.
class WorkGroup {
public:
  /// `wait` decides how long the start of a group waits for another program; null for the connection's own
  /// limit. A group is full at `fullAt` jobs; 0 for as many as the connection likes. `feed` is told the
  /// changes of states; null where there are none.
  WorkGroup(Environment& environment, BusyWait* wait, StateFeed* feed = nullptr, std::size_t fullAt = 0)
      : environment_(environment), wait_(wait), feed_(feed), fullAt_(fullAt) {}
  WorkGroup(const WorkGroup&) = delete;
  WorkGroup& operator=(const WorkGroup&) = delete;
  /// Rolls back what is not committed.
  ~WorkGroup() { abandon(); }

  /// Begins a group unless one is open.
  void begin();
  /// Ends a job; commits the group when it is full, old enough, or `alone` is set. True when it was
  /// committed. This and the next two raise `WorkLostError` when nothing of the group remains.
  bool endJob(bool alone = false);
  /// Commits what is open.
  void finish();
  /// Checks that the open group has not been lost unnoticed.
  void requireWork() const;
  /// Processes and commits jobs until the last one or the stop; returns how many. A lost group is processed
  /// again in smaller ones and in the end job by job, so that only the job that loses its own unit is left
  /// out. A statement or wait that the stop interrupts rolls the open group back and is no failure.
  std::size_t takeAll(std::size_t count, const JobWalk& walk);
  /// Drops the actions of the open group and rolls it back.
  void abandon() noexcept;
  /// Runs after the commit of the open group; at once when none is open.
  void afterCommit(std::function<void()> action);
  /// Tells the feed of a change that was made in the open group.
  void changed(StateChange change) {
    if (feed_ != nullptr) feed_->note(std::move(change));
  }

private:
  /// Where the jobs of `takeAll` stand.
  struct Walk {
    std::size_t count = 0;
    std::size_t at = 0;          ///< the next job
    std::size_t start = 0;       ///< the first one of the open group
    std::size_t fewBefore = 0;   ///< jobs before this index are committed in groups of a few
    std::size_t aloneBefore = 0; ///< and before this one by one

    std::size_t groupSize() const;
    void retake(std::size_t lost);
    /// Goes on behind a job that has lost its unit, or takes it once more.
    void pass(std::size_t lost, bool again) { start = at = again ? lost : lost + 1; }
  };

  void leaveGap();
  void takeNext(Walk& jobs, const JobWalk& walk);
  void beginCollected(std::size_t first, std::size_t count, const JobWalk& walk);

  static constexpr std::size_t few = 32;
  static constexpr std::chrono::milliseconds heldLong{200};
  static constexpr std::chrono::milliseconds gap{5};

  Environment& environment_;
  BusyWait* wait_;
  StateFeed* feed_;
  std::size_t fullAt_;
  GroupLimits limits_; ///< of the open group
  std::vector<std::function<void()>> actions_;
  std::chrono::milliseconds begunAt_{};
  std::chrono::milliseconds heldSinceGap_{};
  std::size_t jobs_ = 0;
  std::size_t foreseen_ = 0;            ///< jobs of the group while what they read is read ahead
  std::chrono::milliseconds mostAge_{}; ///< of the open group
  /// Jobs that a group can hold before it is too old, as the last one has shown.
  std::size_t expected_ = std::numeric_limits<std::size_t>::max();
  bool open_ = false;
  bool collected_ = false;
};

} // namespace qx
