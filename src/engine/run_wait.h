// The request to end a run, and how long a run waits for a busy database.
#pragma once

#include "engine/event_source.h"
#include "platform/database.h"
#include "platform/desktop.h"

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

/// A run waits for a busy database until it is free or the run is stopped, with a notice once a minute. The
/// message loop runs meanwhile, since otherwise nobody could stop it.
class RunWait final : public BusyWait {
public:
  RunWait(EventSource& events, Diagnostics& diagnostics, const StopSignal& stop, Desktop& desktop)
      : events_(events), diagnostics_(diagnostics), stop_(stop), desktop_(desktop) {}
  bool goOn(std::chrono::milliseconds waited) override;

private:
  EventSource& events_;
  Diagnostics& diagnostics_;
  const StopSignal& stop_;
  Desktop& desktop_;
  std::chrono::milliseconds nextNotice_{1000};
};

} // namespace qx
