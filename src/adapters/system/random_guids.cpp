#include "adapters/system/random_guids.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes) number = (number << 8U) | byte;
  return number;
}

} // namespace

std::optional<GuidFields> RandomGuidSource::create() {
  std::array<std::uint8_t, 16> bytes{};
  if (!source_(bytes)) return std::nullopt;
  const std::span<const std::uint8_t> all(bytes);
  GuidFields guid;
  guid.first = bigEndian(all.subspan(0, 4));
  guid.second = static_cast<std::uint16_t>(bigEndian(all.subspan(4, 2)));
  guid.third = static_cast<std::uint16_t>((bigEndian(all.subspan(6, 2)) & 0x0FFFU) | 0x4000U);
  const auto last = all.subspan(8);
  std::copy(last.begin(), last.end(), guid.last.begin());
  guid.last[0] = static_cast<std::uint8_t>((guid.last[0] & 0x3FU) | 0x80U);
  return guid;
}

} // namespace qx
