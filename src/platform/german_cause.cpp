#include "platform/german_cause.h"

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
  if (dynamic_cast<const WorkLostError*>(&error) != nullptr)
    return "Die Datenbank hat die Änderungen zurückgenommen.";
  return "Die Datenbank kann nicht gelesen oder geschrieben werden.";
}

} // namespace

std::string germanCause(const std::exception& error) {
  if (dynamic_cast<const std::system_error*>(&error) != nullptr)
    return std::string("Die Datei kann nicht gelesen oder geschrieben werden. (") + error.what() + ")";
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return "Der Arbeitsspeicher reicht nicht aus.";
  const auto* const database = dynamic_cast<const DatabaseError*>(&error);
  // A failure that no database has numbered was found by the program itself.
  if (database == nullptr || database->nativeCode() == 0) return error.what();
  return std::string(sentenceFor(*database)) + " (" + error.what() + ")";
}

std::string plainCause(const std::exception& error) {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? "out of memory" : error.what();
}

} // namespace qx
