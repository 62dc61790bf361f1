// Translates SQLite's result codes to database errors.
#pragma once

#include <cstdint>
#include <string>

struct sqlite3;

namespace qx::sqlite {

/// Whether a unit of work was open before a statement.
enum class UnitBefore : std::uint8_t { None, Open };

/// Raises the database error of the connection's last failure. A unit that was open and no longer is has been
/// lost.
[[noreturn]] void raiseLastError(sqlite3* database, const std::string& target,
                                 UnitBefore unit = UnitBefore::None);

/// Raises for a result code without a usable connection.
[[noreturn]] void raiseOpenError(int code, const std::string& target, const std::string& cause);

} // namespace qx::sqlite
