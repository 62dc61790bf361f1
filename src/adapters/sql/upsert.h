// Adds a row or overwrites the one with its key.
#pragma once

#include "platform/database.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace qx::relational {

/// One statement that adds the row or, when there is one with the same values of the first `keys` columns,
/// overwrites its other columns. The table has a unique index on those `keys` columns.
Sql putOnConflict(std::string_view table, std::span<const ColumnValue> row, std::size_t keys);
/// Names each value where it meets its column, so that the server knows the type of every parameter.
Sql putByMerge(std::string_view table, std::span<const ColumnValue> row, std::size_t keys);

} // namespace qx::relational
