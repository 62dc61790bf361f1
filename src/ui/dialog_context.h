// The context of every dialog, and waiting for another program before a window writes.
#pragma once

#include "engine/import_job_object2.h"
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

class LookupBridge;

/// All of it must outlive the dialog.
struct DialogContext {
  Environment& environment;
  ImportJobObject2& engine;
  LookupBridge& lookups;
  WaitFactory wait{}; ///< for the work that writes
};

} // namespace qx
