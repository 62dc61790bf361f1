// Processing of contract jobs with bare SQLite.
#pragma once

#include "floor/database.h"

namespace qx::bench {

/// Writes every waiting single contract: the same reads and writes as a run of the program.
void processContracts(Database& database);

} // namespace qx::bench
