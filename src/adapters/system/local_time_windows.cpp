#include "adapters/system/local_time.h"

#include <windows.h>

#include <cstdint>

namespace qx {

// By the zone of the workstation: the C library of Windows would believe a variable TZ.
bool localTime(std::time_t seconds, std::tm& local) {
  // File times count units of 100 ns from 1601 on.
  constexpr std::int64_t unitsInSecond = 10'000'000;
  constexpr std::int64_t secondsToUnixTime = 11'644'473'600;
  ULARGE_INTEGER units{};
  units.QuadPart = static_cast<ULONGLONG>((seconds + secondsToUnixTime) * unitsInSecond);
  const FILETIME universal{units.LowPart, units.HighPart};
  SYSTEMTIME greenwich{};
  SYSTEMTIME here{};
  if (FileTimeToSystemTime(&universal, &greenwich) == 0 ||
      SystemTimeToTzSpecificLocalTime(nullptr, &greenwich, &here) == 0)
    return false;
  constexpr int firstYear = 1900;
  local = {};
  local.tm_year = here.wYear - firstYear;
  local.tm_mon = here.wMonth - 1;
  local.tm_mday = here.wDay;
  local.tm_hour = here.wHour;
  local.tm_min = here.wMinute;
  local.tm_sec = here.wSecond;
  return true;
}

} // namespace qx
