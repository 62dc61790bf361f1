#include "adapters/system/system_sources.h"

#include "adapters/system/local_time.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>
#include <thread>

namespace qx {
DateTime SystemClock::now() {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  if (!localTime(seconds, local)) throw std::runtime_error("the local time cannot be determined");
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

} // namespace qx
