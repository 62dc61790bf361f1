// Export and import of customer jobs with bare SQLite.
#pragma once

#include "floor/database.h"

#include <string>

namespace qx::bench {

/// Writes every staged customer as a line of a job file, oldest date of receipt first.
void exportCustomers(Database& database, const std::string& file);

/// Looks each line's job up by its key and inserts it, committed in the groups of the program.
void importCustomers(Database& database, const std::string& file);

} // namespace qx::bench
