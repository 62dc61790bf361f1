// Tells whether two databases hold the same work.
#pragma once

#include "floor/database.h"

#include <ostream>

namespace qx::bench {

/// Compares the tables that staging and processing write, row by row in the order of their keys. What
/// differs between two runs by nature (the identity and the time of a protocol) is left out.
bool sameWork(Database& first, Database& second, std::ostream& differences);

} // namespace qx::bench
