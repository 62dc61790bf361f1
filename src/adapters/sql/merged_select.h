// The first rows over several job codes without sorting them all.
#pragma once

#include "adapters/sql/dialect.h"

#include <optional>
#include <string>
#include <string_view>

namespace qx::relational {

/// A translated select of this one shape, "Select ... From [t]Where JobType = 'a' Or JobType = 'b' ... Order
/// by x", limited to its first rows: a union of one limited select per code, each in the order asked for,
/// merged and limited again. An index on (`JobType`, x) then serves every part, however many rows there are.
/// Equal keys come in order of insertion, reversed when x descends. Null for every other shape.
std::optional<std::string> mergedSelect(std::string_view select, std::string_view limit,
                                        const Dialect& dialect);

} // namespace qx::relational
