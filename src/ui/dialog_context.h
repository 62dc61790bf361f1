// The context of every dialog, and what a window does before it reads or writes: it connects anew, and waits
// for another program.
#pragma once

#include "engine/import_job_object2.h"
#include "platform/environment.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace qx {

/// Creates the notice that a window shows while another program holds the database, with a button to cancel.
/// Nothing is shown when it is empty or returns null.
using WaitFactory = std::function<std::unique_ptr<BusyWait>()>;

inline std::unique_ptr<BusyWait> makeWait(const WaitFactory& factory) {
  return factory ? factory() : nullptr;
}

/// Makes sure that the server can be reached. A lost connection is opened anew; where that fails, the clerk
/// is asked until it works or the clerk declines: false then. Any other failure is left to the work itself,
/// which reports why.
bool isConnected(Environment& environment);

/// The same, then waits until no other program writes. False also when the clerk or `wait` gave up.
bool awaitDatabase(Environment& environment, BusyWait* wait);

class LookupBridge;

/// The answer to the question whether a parked job is released when it is saved.
enum class ReleaseAnswer : std::uint8_t {
  Release,
  Keep, ///< saved, but still parked
  Back, ///< not saved
};

/// All of it must outlive the dialog.
struct DialogContext {
  Environment& environment;
  ImportJobObject2& engine;
  LookupBridge& lookups;
  WaitFactory wait{}; ///< for the work that writes
  /// Asks for the answer, proposing to release or not; when empty, a yes-no question is asked.
  std::function<ReleaseAnswer(std::string_view text, bool proposesRelease)> askRelease{};
};

} // namespace qx
