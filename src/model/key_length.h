// The longest key of a job or of one of its positions.
#pragma once

#include <cstddef>

namespace qx {

/// Characters, not bytes.
inline constexpr std::size_t longestKey = 32;

} // namespace qx
