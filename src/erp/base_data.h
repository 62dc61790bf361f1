// The rows required to process any job.
#pragma once

#include "platform/database.h"

namespace qx::erp {

/// Fills a fresh schema with the home currency, the tax marks and keys and the number range of orders.
/// Options are left unset. Call it inside a unit of work.
void fillBaseData(Connection& connection);

} // namespace qx::erp
