#include "model/job_key.h"

namespace qx {
namespace {

void appendHex(std::string& text, std::uint32_t number, int digits) {
  constexpr std::string_view hex = "0123456789ABCDEF";
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) text += hex[(number >> shift) & 0xFU];
}

} // namespace

std::string jobKey(const std::optional<GuidFields>& guid) {
  std::string key;
  if (!guid) return key;
  key.reserve(32);
  appendHex(key, guid->first, 8);
  appendHex(key, guid->second, 4);
  appendHex(key, guid->third, 4);
  for (const std::uint8_t byte : guid->last) appendHex(key, byte, 2);
  return key;
}

} // namespace qx
