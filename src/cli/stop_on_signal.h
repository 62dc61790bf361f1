// Ends a run when the program is asked to stop.
#pragma once

#include "engine/standing_stop.h"

#include <csignal>

namespace qx::cli {

/// While it lives, SIGINT and SIGTERM ask the engine to stop after the current job, a second one interrupts
/// the statement that the job may be stuck in, and a closed pipe is an error of the stream instead of the end
/// of the program. A signal before the run ends it as soon as it has begun. Only one may exist.
class StopOnSignal {
public:
  explicit StopOnSignal(ImportJobObject2& engine);
  StopOnSignal(const StopOnSignal&) = delete;
  StopOnSignal& operator=(const StopOnSignal&) = delete;
  ~StopOnSignal();

private:
  StandingStop stop_;
  struct sigaction interrupt_ {};
  struct sigaction terminate_ {};
  struct sigaction pipe_ {};
};

} // namespace qx::cli
