#include "adapters/sqlite/sqlite_error.h"

#include "platform/database_error.h"

#include <sqlite3.h>

namespace qx::sqlite {
namespace {

enum class Severity { Statement, Busy, Interrupted, Store, ReadOnly };

Severity severityOf(int primaryCode) {
  switch (primaryCode) {
  case SQLITE_BUSY:
  case SQLITE_LOCKED:
    return Severity::Busy;
  case SQLITE_INTERRUPT:
    return Severity::Interrupted;
  case SQLITE_READONLY:
    return Severity::ReadOnly;
  case SQLITE_FULL:
  case SQLITE_IOERR:
  case SQLITE_CORRUPT:
  case SQLITE_NOTADB:
  case SQLITE_CANTOPEN:
  case SQLITE_NOMEM:
  case SQLITE_PROTOCOL:
  case SQLITE_PERM:
  case SQLITE_AUTH:
    return Severity::Store;
  default:
    return Severity::Statement;
  }
}

} // namespace

void raiseLastError(sqlite3* database, const std::string& target, UnitBefore unit) {
  const int code = sqlite3_extended_errcode(database);
  const std::string cause = sqlite3_errmsg(database);
  switch (severityOf(code & 0xFF)) {
  case Severity::Busy:
    throw BusyError(target + ": " + cause, code);
  case Severity::Interrupted:
    throw InterruptedError(target + ": " + cause, code);
  case Severity::Store:
    throw StoreError(target + ": " + cause, code);
  case Severity::ReadOnly:
    throw ReadOnlyError(
        target + ": you may read this database, but not change it: its file and folder must be writable",
        code);
  case Severity::Statement:
    break;
  }
  if (unit == UnitBefore::Open && sqlite3_get_autocommit(database) != 0) throw WorkLostError(cause, code);
  throw StatementError(cause, code);
}

void raiseOpenError(int code, const std::string& target, const std::string& cause) {
  throw StoreError(target + ": " + cause, code);
}

} // namespace qx::sqlite
