// Translates statements to a database's dialect.
#pragma once

#include "adapters/sql/dialect.h"
#include "adapters/sql/select_parts.h"
#include "platform/sql.h"

#include <string>
#include <string_view>

namespace qx::relational {

/// The statement with a parameter for every value, names quoted, and the few constructs that differ
/// rewritten. The rewriting is a fixed list, not a parser; it is done once per distinct statement.
std::string translate(const Sql& statement, const Dialect& dialect);

/// An identifier in the quotes of the dialect.
std::string quotedName(std::string_view identifier, const Dialect& dialect);

/// A select that gives this many rows at most. Its first word is "SELECT".
std::string limitedSelect(std::string_view select, std::string_view rows, const Dialect& dialect);

/// An insert of one row, of the defaults without names, that returns the column `key`.
std::string insertText(std::string_view table, std::string_view names, std::string_view values,
                       std::string_view key, const Dialect& dialect);

/// The order of a select, from its keywords on: its sort terms and behind them the row key of the table,
/// which may be empty. So rows without an order and equal sort keys come in order of insertion.
std::string orderClause(const SelectParts& parts, std::string_view rowKey, const Dialect& dialect);

/// Sort terms, with nulls before all other values.
std::string sortTerms(std::string_view orderBy, const Dialect& dialect);

} // namespace qx::relational
