// Waiting for another program before something is written from a window.
#pragma once

#include "platform/environment.h"

#include <functional>
#include <memory>

namespace qx {

/// Makes what a window shows while another program holds the database, and whose button gives up. Empty, or
/// null when called: nothing is shown.
using WaitFactory = std::function<std::unique_ptr<BusyWait>()>;

inline std::unique_ptr<BusyWait> makeWait(const WaitFactory& factory) {
  return factory ? factory() : nullptr;
}

/// Waits until no other program writes. False when the clerk has given up, or `wait` did. A database that
/// cannot be written at all is left to the work itself, which tells why.
bool awaitDatabase(Environment& environment, BusyWait* wait);

} // namespace qx
