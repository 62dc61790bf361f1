// What was handed over under which key; the file staging itself enters it.
#pragma once

#include "model/date.h"
#include "platform/database.h"

#include <cstdint>

namespace qx {

/// Forgets the contents that were handed over before the day; a database without their table has none.
/// Returns their number.
std::int64_t forgetContentsBefore(Connection& connection, const Date& day);

} // namespace qx
