#include "platform/failure.h"

#include "platform/database_error.h"

#include <new>
#include <string_view>
#include <system_error>

namespace qx {
namespace {

std::string_view sentenceFor(const DatabaseError& error) {
  if (dynamic_cast<const BusyError*>(&error) != nullptr)
    return "Die Datenbank wird gerade von einem anderen Programm benutzt.";
  if (dynamic_cast<const StatementError*>(&error) != nullptr) return "Die Datenbank hat das abgelehnt.";
  if (dynamic_cast<const RepeatedConflictError*>(&error) != nullptr)
    return "Andere Programme haben bei jedem Versuch zur selben Zeit dieselben Daten geändert.";
  if (dynamic_cast<const ConflictError*>(&error) != nullptr)
    return "Ein anderes Programm hat zur selben Zeit dieselben Daten geändert.";
  if (dynamic_cast<const WorkLostError*>(&error) != nullptr)
    return "Die Datenbank hat die Änderungen zurückgenommen.";
  if (dynamic_cast<const ReadOnlyError*>(&error) != nullptr)
    return "Sie dürfen die Datenbank lesen, aber nicht ändern.";
  if (dynamic_cast<const StatementEndedError*>(&error) != nullptr)
    return "Die Datenbank hat einen Befehl beendet, der ihr zu lange dauerte.";
  if (dynamic_cast<const CommitUnknownError*>(&error) != nullptr)
    return "Die Verbindung zur Datenbank brach ab, bevor sie die Änderungen bestätigt hat. Es ist nicht "
           "bekannt, "
           "ob sie gespeichert sind.";
  if (dynamic_cast<const ConnectionLostError*>(&error) != nullptr)
    return "Die Datenbank ist nicht erreichbar.";
  if (dynamic_cast<const MissingRightError*>(&error) != nullptr)
    return "Ihnen fehlt ein Recht in der Datenbank.";
  return "Die Datenbank kann nicht gelesen oder geschrieben werden.";
}

std::string_view sentenceFor(const std::error_code& code) {
  if (code == std::errc::no_space_on_device) return "Der Datenträger ist voll.";
  if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted ||
      code == std::errc::read_only_file_system)
    return "Die Berechtigung für die Datei oder ihren Ordner fehlt.";
  if (code == std::errc::no_such_file_or_directory) return "Die Datei oder ihr Ordner ist nicht vorhanden.";
  return "Die Datei kann nicht gelesen oder geschrieben werden.";
}

} // namespace

std::string germanCause(const std::exception& error) {
  if (const auto* const system = dynamic_cast<const std::system_error*>(&error))
    return std::string(sentenceFor(system->code()));
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return "Der Arbeitsspeicher reicht nicht aus.";
  const auto* const database = dynamic_cast<const DatabaseError*>(&error);
  // A failure without a database error number was detected by the program itself.
  if (database == nullptr || database->nativeCode() == 0) return error.what();
  return std::string(sentenceFor(*database));
}

std::string plainCause(const std::exception& error) {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? "out of memory" : error.what();
}

} // namespace qx
