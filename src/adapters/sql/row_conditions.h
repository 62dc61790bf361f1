// Conditions that each kind of database states in its own way.
#pragma once

#include "platform/database.h"
#include "platform/sql.h"

#include <span>
#include <string_view>

namespace qx::relational {

/// A text begins with the prefix, as its column compares texts. With `afterPrefix` another condition leaves
/// out what precedes the prefix already.
///
/// By range: a range uses an index and has no wildcards.
Sql beginsByRange(const Sql& text, std::string_view prefix, bool afterPrefix);
/// A comparison by weights ranks "mü" before "Muster", so a range alone would be too wide.
Sql beginsByRangeAndStart(const Sql& text, std::string_view prefix, bool afterPrefix);
/// By a pattern, which uses an index where it begins with fixed characters.
Sql beginsLike(const Sql& text, std::string_view prefix, bool afterPrefix);

/// A row comes after the position when sorted by its columns, none of which is null: as one comparison, and
/// by one column after the other.
Sql comesAfterAsRow(std::span<const ColumnValue> position);
Sql comesAfterByColumns(std::span<const ColumnValue> position);

} // namespace qx::relational
