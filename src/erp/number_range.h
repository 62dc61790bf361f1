// The ERP's number ranges.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace qx::erp {

/// Draws the next number of an active range and advances the range. Null when there is no such range in the
/// booking circle, when it is not active or when it is used up. Two programs never draw the same number.
/// `std::runtime_error` names range and circle when its values are no whole numbers or do not change.
std::optional<std::int32_t> drawNumber(Connection& connection, std::string_view range,
                                       std::int16_t bookingCircle);

} // namespace qx::erp
