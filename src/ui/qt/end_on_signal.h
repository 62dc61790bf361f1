// Requests to end the program leave the event loop.
#pragma once

#include "engine/standing_stop.h"
#include "platform/stop_requests.h"

#include <QTimer>

namespace qx {

/// While it exists, a request to end the program stops a run after its current job and then leaves the event
/// loop. One object at a time.
class EndOnSignal {
public:
  explicit EndOnSignal(ImportJobObject2& engine);
  EndOnSignal(const EndOnSignal&) = delete;
  EndOnSignal& operator=(const EndOnSignal&) = delete;
  ~EndOnSignal() = default;

  /// A request has come, which may precede the event loop.
  bool ended() const { return stop_.asked(); }

private:
  StandingStop stop_;
  QTimer look_;
  StopRequests requests_;
};

} // namespace qx
