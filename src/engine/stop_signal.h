// A request to end a run after the current job.
#pragma once

#include <atomic>

namespace qx {

/// Set from anywhere, even a signal handler; checked after each job.
class StopSignal {
public:
  void request() noexcept { requested_.store(true, std::memory_order_relaxed); }
  void clear() noexcept { requested_.store(false, std::memory_order_relaxed); }
  bool requested() const noexcept { return requested_.load(std::memory_order_relaxed); }

private:
  std::atomic<bool> requested_{false};
  static_assert(std::atomic<bool>::is_always_lock_free);
};

} // namespace qx
