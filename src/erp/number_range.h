// The ERP's number ranges.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qx::erp {

/// Draws numbers. Two programs never draw the same one.
class NumberRanges {
public:
  /// Draws the next number of an active range and advances the range. Null when the booking circle has no
  /// such range, or it is inactive or used up. Raises `std::runtime_error`, which names range and circle,
  /// when its values are not whole numbers or do not change.
  std::optional<std::int32_t> draw(Connection& connection, std::string_view range,
                                   std::int16_t bookingCircle);

  struct State {
    std::int64_t current = 0;
    std::int64_t first = 1;
    std::int64_t last = std::numeric_limits<std::int32_t>::max();
    /// The row, which nobody else changes in this epoch of the connection.
    std::shared_ptr<Recordset> row;
    const Connection* connection = nullptr;
    std::uint64_t epoch = 0;
  };

private:
  std::map<std::pair<std::string, std::int16_t>, State> known_;
};

} // namespace qx::erp
