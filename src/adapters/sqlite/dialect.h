// Translates statements to SQLite's dialect.
#pragma once

#include "platform/sql.h"

#include <string>
#include <string_view>

namespace qx::sqlite {

/// The statement with a parameter for every value, names quoted, and the few constructs that differ
/// rewritten. The rewriting is a fixed list, not a parser; it is done once per distinct statement.
std::string translate(const Sql& statement);

/// An integer expression that orders German date texts by time, null for other texts. It uses built-in
/// functions only, so that any program that writes the table can maintain an index on it.
std::string chronological(std::string_view column);

/// An identifier in double quotes.
std::string quotedName(std::string_view identifier);

} // namespace qx::sqlite
