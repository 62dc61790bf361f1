// The text keys of jobs and positions.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace qx {

/// A freshly generated GUID in its four fields, the last one in storage order.
struct GuidFields {
  std::uint32_t first = 0;
  std::uint16_t second = 0;
  std::uint16_t third = 0;
  std::array<std::uint8_t, 8> last{};
};

/// 32 upper-case hexadecimal digits without braces or hyphens; empty when no GUID could be generated.
std::string jobKey(const std::optional<GuidFields>& guid);

} // namespace qx
