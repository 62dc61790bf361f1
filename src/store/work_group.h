// Groups the units of work of a run or an import.
#pragma once

#include "platform/environment.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <vector>

namespace qx {

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
  /// committed. Raises `WorkLostError` when the database has rolled the group back by itself.
  bool endJob(bool alone = false);
  /// Commits what is open.
  void finish();
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
