#include "ui/database_wait.h"

#include "platform/trapped.h"

namespace qx {

bool awaitDatabase(Environment& environment, BusyWait* wait) {
  const auto connection = environment.connection;
  if (!connection || !connection->ownsWork() || connection->inWork()) return true;
  bool stayedBusy = false;
  // Whoever gets a unit does not have to wait; it ends without having done anything.
  trapped(
      environment.diagnostics, {"waiting for the database"}, [&] { const WorkUnit unit(*connection, wait); },
      [&](const std::exception& error) { stayedBusy = dynamic_cast<const BusyError*>(&error) != nullptr; });
  return !stayedBusy;
}

} // namespace qx
