// Staged jobs of every kind and every outcome for the invented company.
#pragma once

#include "platform/database.h"

#include <cstddef>

namespace qx::erp {

/// Stages the jobs, received in the days up to `today`, and returns how many there are, positions not
/// counted. They are meant for the demo data and have fixed keys: a second call raises `StatementError`. Call
/// it inside a unit of work.
std::size_t stageDemoJobs(Connection& connection, const Date& today);

} // namespace qx::erp
