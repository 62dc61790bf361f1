// An invented company to try everything out with.
#pragma once

#include "platform/database.h"

namespace qx {

/// Fills a schema that holds the base rows with the master data and options of an invented company. Call it
/// inside a unit of work.
void fillDemoData(Connection& connection);

} // namespace qx
