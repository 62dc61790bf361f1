// Processing of customer jobs with bare SQLite.
#pragma once

#include "floor/database.h"

namespace qx::bench {

/// Writes every waiting customer job: the same reads and writes as a run of the program, committed in the
/// same groups, but without savepoints and without leaving the database free in between.
void processCustomers(Database& database);

} // namespace qx::bench
