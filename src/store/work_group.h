// Groups the units of work of a run or an import.
#pragma once

#include "platform/environment.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <vector>

namespace qx {

/// What a walk over many jobs does with each of them.
struct JobWalk {
  /// Takes the job of this place, inside the open group.
  std::function<void(std::size_t at)> take;
  /// Told of a job that lost its unit of work while it was alone in it. True to take it once more, false to
  /// go on behind it.
  std::function<bool(std::size_t at, const WorkLostError& loss)> lost;
  /// Looked at before each job.
  std::function<bool()> stopped;
};

/// Commits jobs in groups and leaves the database free now and then.
///
/// What a job promises to the outside (results, message boxes) is kept back until the commit that makes it
/// true; when the group is lost or abandoned it is forgotten. On a host's connection nothing is begun or
/// committed and promises are kept at the end of each job.
class WorkGroup {
public:
  /// `wait` decides how long the start of a group waits for another program; null for the connection's own
  /// limit. A group is full with `fullAt` jobs.
  WorkGroup(Environment& environment, BusyWait* wait, std::size_t fullAt = 100)
      : environment_(environment), wait_(wait), fullAt_(fullAt) {}
  WorkGroup(Environment& environment, BusyWait& wait) : WorkGroup(environment, &wait) {}
  WorkGroup(const WorkGroup&) = delete;
  WorkGroup& operator=(const WorkGroup&) = delete;
  /// Rolls back what is not committed.
  ~WorkGroup() { abandon(); }

  /// Makes sure that a group is open.
  void begin();
  /// Ends a job; commits the group when it is full, old enough, or `alone` is set. True when it was
  /// committed. Raises `WorkLostError` when nothing of the group remains, here and in the next two.
  bool endJob(bool alone = false);
  /// Commits what is open.
  void finish();
  /// Makes sure that the open group has not been lost unnoticed.
  void requireWork() const;
  /// Takes jobs until the last one or the stop and commits them; how many were taken. A group that is lost
  /// is taken again job by job, so that only the job that loses its own unit is left behind. A statement or
  /// a wait that the stop ends takes the open group back and is no failure.
  std::size_t takeAll(std::size_t count, const JobWalk& walk);
  /// Forgets the open group and rolls it back.
  void abandon() noexcept;
  /// Runs after the commit of the open group; at once when none is open.
  void afterCommit(std::function<void()> promise);

private:
  void leaveGap();

  static constexpr std::chrono::milliseconds oldAt{200};
  static constexpr std::chrono::milliseconds gap{5};

  Environment& environment_;
  BusyWait* wait_;
  std::size_t fullAt_;
  std::vector<std::function<void()>> promises_;
  std::chrono::milliseconds begunAt_{};
  std::chrono::milliseconds heldSinceGap_{};
  std::size_t jobs_ = 0;
  bool open_ = false;
};

} // namespace qx
