// The ERP's number ranges.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace qx::erp {

/// Draws the next number of an active range and advances the range. Null when the booking circle has no such
/// range, or it is inactive or used up. Two programs never draw the same number. Raises `std::runtime_error`,
/// which names range and circle, when its values are not whole numbers or do not change.
std::optional<std::int32_t> drawNumber(Connection& connection, std::string_view range,
                                       std::int16_t bookingCircle);

} // namespace qx::erp
