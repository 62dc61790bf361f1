// Ends a run when the program is asked to stop.
#pragma once

#include "engine/standing_stop.h"
#include "platform/stop_requests.h"

namespace qx::cli {

/// While it lives, a request to end the program asks the engine to stop after the current job, a second one
/// interrupts the statement that the job may be stuck in, and a closed pipe is an error of the stream instead
/// of the end of the program. A request before the run ends it as soon as it has begun. Only one may exist.
class StopOnSignal {
public:
  explicit StopOnSignal(ImportJobObject2& engine);

private:
  StandingStop stop_;
  StopRequests requests_;
};

} // namespace qx::cli
