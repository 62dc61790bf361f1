#include "adapters/system/system_sources.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <stdexcept>
#include <sys/random.h>
#include <thread>

namespace qx {
namespace {

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes) number = (number << 8U) | byte;
  return number;
}

} // namespace

DateTime SystemClock::now() {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr)
    throw std::runtime_error("the local time cannot be determined");
  constexpr int firstYear = 1900;
  // A leap second (60) becomes second 59.
  constexpr int lastSecond = 59;
  return {makeDate(firstYear + local.tm_year, static_cast<unsigned>(local.tm_mon) + 1,
                   static_cast<unsigned>(local.tm_mday)),
          local.tm_hour, local.tm_min, std::min(local.tm_sec, lastSecond)};
}

std::chrono::milliseconds SystemClock::elapsed() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

void SystemClock::sleep(std::chrono::milliseconds span) { std::this_thread::sleep_for(span); }

bool systemRandomBytes(std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = getrandom(bytes.data(), bytes.size(), 0);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

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
