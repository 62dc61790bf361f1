// Comparison of codes as the tables compare them.
#pragma once

#include <algorithm>
#include <string_view>

namespace qx {

/// Without regard to ASCII case.
inline bool equalCodes(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
  return std::ranges::equal(a, b, [&](char x, char y) { return lower(x) == lower(y); });
}

} // namespace qx
