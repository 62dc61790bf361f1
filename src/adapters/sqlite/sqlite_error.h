// Translates SQLite's result codes to database errors.
#pragma once

#include <string>

struct sqlite3;

namespace qx::sqlite {

/// Raises the database error of the connection's last failure. `workWasOpen`: a unit was open before the
/// statement; if it is no longer, it is lost.
[[noreturn]] void raiseLastError(sqlite3* database, const std::string& target, bool workWasOpen);

/// Raises for a result code without a usable connection.
[[noreturn]] void raiseOpenError(int code, const std::string& target, const std::string& cause);

} // namespace qx::sqlite
