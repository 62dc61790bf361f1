// Fills a database with what sample jobs refer to.
#pragma once

#include "floor/database.h"

#include <cstdint>

namespace qx::bench {

/// The codes, articles, prices and contract objects that the sample jobs name; codes that are there already
/// stay.
void addCodes(Database& database);

/// Every `step`th sample customer below `count`.
void addCustomers(Database& database, std::uint32_t count, std::uint32_t step);

/// Every second sample contract below `count`.
void addHalfOfContracts(Database& database, std::uint32_t count);

} // namespace qx::bench
