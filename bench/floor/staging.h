// Staging with bare SQLite.
#pragma once

#include "floor/database.h"

#include <cstdint>

namespace qx::bench {

/// Looks each job up by its key and inserts it, all in one transaction. The jobs are made in memory.
void stageCustomers(Database& database, std::uint32_t count);

/// The same for orders of the first `customers` customers, with their positions.
void stageOrders(Database& database, std::uint32_t count, std::uint32_t customers);

} // namespace qx::bench
