// From SQLite's result codes to the failures that the component knows.
#pragma once

#include <string>

struct sqlite3;

namespace qx::sqlite {

/// Raises the database error that the connection's last failure stands for. `workWasOpen`: a unit was open
/// before the statement; when it is gone now, the unit is lost.
[[noreturn]] void raiseLastError(sqlite3* database, const std::string& target, bool workWasOpen);

/// Raises for a result code without a usable connection behind it.
[[noreturn]] void raiseOpenError(int code, const std::string& target, const std::string& cause);

} // namespace qx::sqlite
