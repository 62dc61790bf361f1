#include "ui/database_wait.h"

#include <exception>

namespace qx {

bool awaitDatabase(Environment& environment, BusyWait* wait) {
  const auto connection = environment.connection;
  if (!connection || !connection->ownsWork() || connection->inWork()) return true;
  try {
    // Waits by beginning a unit, which ends without a change.
    const WorkUnit unit(*connection, wait);
    return true;
  } catch (const BusyError& error) {
    environment.diagnostics.report({"waiting for the database", error.what(), {}});
    return false;
  } catch (const std::exception& error) {
    environment.diagnostics.report({"waiting for the database", error.what(), {}});
    return true;
  }
}

} // namespace qx
