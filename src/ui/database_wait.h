// Waiting for another program before something is written from a window.
#pragma once

#include "platform/environment.h"

#include <functional>
#include <memory>

namespace qx {

/// Creates the notice that a window shows while another program holds the database, with a button to cancel.
/// Nothing is shown when it is empty or returns null.
using WaitFactory = std::function<std::unique_ptr<BusyWait>()>;

inline std::unique_ptr<BusyWait> makeWait(const WaitFactory& factory) {
  return factory ? factory() : nullptr;
}

/// Waits until no other program writes. False when the clerk or `wait` gave up. A database that cannot be
/// written at all is left to the work itself, which reports why.
bool awaitDatabase(Environment& environment, BusyWait* wait);

} // namespace qx
