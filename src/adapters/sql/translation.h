// Translates statements to a database's dialect.
#pragma once

#include "adapters/sql/dialect.h"
#include "platform/sql.h"

#include <string>
#include <string_view>

namespace qx::relational {

/// The statement with a parameter for every value, names quoted, and the few constructs that differ
/// rewritten. The rewriting is a fixed list, not a parser; it is done once per distinct statement.
std::string translate(const Sql& statement, const Dialect& dialect);

/// An identifier in double quotes.
std::string quotedName(std::string_view identifier, const Dialect& dialect);

/// Sort terms, with nulls before all other values.
std::string sortTerms(std::string_view orderBy, const Dialect& dialect);

} // namespace qx::relational
