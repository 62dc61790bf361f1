#include "ui/dialog_context.h"

#include "platform/database_error.h"
#include "platform/failure.h"

namespace qx {
namespace {

constexpr std::string_view lostQuestion =
    "Die Verbindung zur Datenbank ist unterbrochen. Ihre Eingaben bleiben erhalten.\r\n"
    "Soll die Verbindung wieder aufgebaut werden?";
constexpr std::string_view stillLostQuestion =
    "Die Datenbank ist noch nicht erreichbar. Ihre Eingaben bleiben erhalten.\r\n"
    "Soll es noch einmal versucht werden?";

/// Null when the component does not own the units of the connection, or is in one.
std::shared_ptr<Connection> idleConnection(const Environment& environment) {
  auto connection = environment.connection;
  if (!connection || !connection->ownsWork() || connection->inWork()) return nullptr;
  return connection;
}

} // namespace

bool isConnected(Environment& environment) {
  const auto connection = idleConnection(environment);
  if (!connection || !connection->files().empty()) return true;
  std::string_view question = lostQuestion;
  while (true) {
    bool lost = false;
    // The beginning of a unit opens a lost connection anew.
    trapped(
        environment.diagnostics, {"connection"}, [&] { const WorkUnit unit(*connection); },
        [&](const std::exception& error) {
          lost = dynamic_cast<const ConnectionLostError*>(&error) != nullptr;
        });
    if (!lost) return true;
    if (!askQuestion(environment, {std::string(question)})) return false;
    question = stillLostQuestion;
  }
}

bool awaitDatabase(Environment& environment, BusyWait* wait) {
  if (!isConnected(environment)) return false;
  const auto connection = idleConnection(environment);
  if (!connection) return true;
  bool stayedBusy = false;
  // Waits by beginning a unit, which ends without a change.
  trapped(
      environment.diagnostics, {"waiting for the database"}, [&] { const WorkUnit unit(*connection, wait); },
      [&](const std::exception& error) { stayedBusy = dynamic_cast<const BusyError*>(&error) != nullptr; });
  return !stayedBusy;
}

} // namespace qx
