// Lists of columns in statements that are composed at run time.
#pragma once

#include "platform/database.h"
#include "platform/sql.h"

#include <functional>
#include <string>
#include <vector>

namespace qx::relational {

/// The names of the columns that a select gives.
std::vector<std::string> fieldNames(Connection& connection, const Sql& select);

/// A term for each column, separated by commas.
Sql joinedBy(const std::vector<std::string>& names, const std::function<Sql(const std::string&)>& term);

/// The term that is the column itself.
Sql nameAlone(const std::string& column);

} // namespace qx::relational
