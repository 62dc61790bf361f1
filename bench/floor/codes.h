// Fills a database with what sample jobs refer to.
#pragma once

#include "floor/database.h"

#include <cstdint>

namespace qx::bench {

/// The codes that the sample jobs name; those that are there already stay.
void addCodes(Database& database);

/// Every second sample customer below `count`, so that the jobs find half of their customers.
void addHalfOfCustomers(Database& database, std::uint32_t count);

} // namespace qx::bench
