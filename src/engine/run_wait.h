// How long a run waits for a busy database.
#pragma once

#include "engine/event_source.h"
#include "engine/stop_signal.h"
#include "platform/database.h"
#include "platform/desktop.h"

namespace qx {

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
