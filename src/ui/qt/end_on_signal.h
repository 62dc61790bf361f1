// SIGINT and SIGTERM end the event loop.
#pragma once

#include "engine/standing_stop.h"

#include <QSocketNotifier>

#include <csignal>
#include <memory>

namespace qx {

/// While it exists, SIGINT and SIGTERM stop a run after its current job and then leave the event loop. One
/// object at a time. Raises `std::runtime_error` when the system cannot create a pipe.
class EndOnSignal {
public:
  explicit EndOnSignal(ImportJobObject2& engine);
  EndOnSignal(const EndOnSignal&) = delete;
  EndOnSignal& operator=(const EndOnSignal&) = delete;
  ~EndOnSignal();

  /// Handles a signal, which may precede the event loop.
  bool ended() const { return stop_.asked(); }

private:
  StandingStop stop_;
  std::unique_ptr<QSocketNotifier> notifier_;
  struct sigaction interrupt_ {};
  struct sigaction terminate_ {};
  int ends_[2] = {-1, -1};
};

} // namespace qx
