// Processing of order jobs with bare SQLite.
#pragma once

#include "floor/database.h"

namespace qx::bench {

/// Writes every waiting order: the same reads and writes as a run of the program.
void processOrders(Database& database);

} // namespace qx::bench
