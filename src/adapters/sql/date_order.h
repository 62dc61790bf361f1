// Expressions that put German date texts in order of time.
#pragma once

#include <string>
#include <string_view>

namespace qx::relational {

/// By patterns and `substr`.
std::string chronologicalByParts(std::string_view column);

/// By one regular expression.
std::string chronologicalByRegex(std::string_view column);

/// By patterns and the conversion of the digits "yyyymmdd" to a date.
std::string chronologicalByConversion(std::string_view column);

} // namespace qx::relational
