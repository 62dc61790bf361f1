#include "ui/dialog_context.h"

#include "platform/failure.h"

namespace qx {

bool awaitDatabase(Environment& environment, BusyWait* wait) {
  const auto connection = environment.connection;
  if (!connection || !connection->ownsWork() || connection->inWork()) return true;
  bool stayedBusy = false;
  // Waits by beginning a unit, which ends without a change.
  trapped(
      environment.diagnostics, {"waiting for the database"}, [&] { const WorkUnit unit(*connection, wait); },
      [&](const std::exception& error) { stayedBusy = dynamic_cast<const BusyError*>(&error) != nullptr; });
  return !stayedBusy;
}

} // namespace qx
