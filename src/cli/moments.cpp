#include "cli/moments.h"

#include "program/program_error.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>

namespace qx::cli {
namespace {

constexpr std::int64_t secondsOfDay = 86400;
constexpr std::int64_t secondsOfHour = 3600;
constexpr std::int64_t secondsOfMinute = 60;

std::int64_t secondsAsIfUtc(const DateTime& moment) {
  return std::chrono::sys_days(moment.date).time_since_epoch().count() * secondsOfDay +
         moment.hour * secondsOfHour + moment.minute * secondsOfMinute + moment.second;
}

DateTime utcMoment(std::int64_t seconds) {
  const auto day =
      std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(seconds)));
  const auto rest = seconds - day.time_since_epoch().count() * secondsOfDay;
  return {Date(day), static_cast<int>(rest / secondsOfHour),
          static_cast<int>(rest % secondsOfHour / secondsOfMinute), static_cast<int>(rest % secondsOfMinute)};
}

/// How much a local time is ahead of the same one in UTC.
std::int64_t offsetAt(const DateTime& local) { return secondsAsIfUtc(local) - secondsOf(local); }

/// The offset may be another one there than at the time that has these figures here.
DateTime localMoment(std::int64_t seconds) {
  const DateTime near = utcMoment(seconds + offsetAt(utcMoment(seconds)));
  return utcMoment(seconds + offsetAt(near));
}

/// "+01:00" as seconds; 0 for "Z".
std::int64_t zoneSeconds(std::string_view zone) {
  if (zone.size() < 3) return 0;
  const auto number = [&](std::size_t at) {
    return static_cast<std::int64_t>(zone[at] - '0') * 10 + zone[at + 1] - '0';
  };
  const std::int64_t ahead = number(1) * secondsOfHour + (zone.size() >= 6 ? number(4) * secondsOfMinute : 0);
  return zone.front() == '-' ? -ahead : ahead;
}

std::optional<DateTime> isoTime(std::string_view text) {
  constexpr std::size_t dayLength = 10;
  const auto day = parseIsoDate(text);
  if (!day) return std::nullopt;
  if (text.size() <= dayLength) return DateTime{*day, 0, 0, 0};
  const std::string_view time = text.substr(dayLength + 1);
  const std::size_t end = std::min(time.find_first_of(".Z+-"), time.size());
  const auto moment = parseGermanDateTime(germanDate(*day) + ' ' + std::string(time.substr(0, end)));
  const std::size_t zone = time.find_first_of("Z+-");
  if (!moment || zone == std::string_view::npos) return moment;
  return localMoment(secondsAsIfUtc(*moment) - zoneSeconds(time.substr(zone)));
}

} // namespace

std::int64_t secondsOf(const DateTime& local) {
  constexpr int firstYear = 1900;
  std::tm fields{};
  fields.tm_year = static_cast<int>(local.date.year()) - firstYear;
  fields.tm_mon = static_cast<int>(static_cast<unsigned>(local.date.month())) - 1;
  fields.tm_mday = static_cast<int>(static_cast<unsigned>(local.date.day()));
  fields.tm_hour = local.hour;
  fields.tm_min = local.minute;
  fields.tm_sec = local.second;
  fields.tm_isdst = -1;
  return std::mktime(&fields);
}

std::string isoMoment(const std::string& stamp) {
  const auto moment = parseTimeStamp(stamp);
  if (!moment) return stamp;
  const std::int64_t offset = offsetAt(*moment);
  const std::int64_t minutes = std::abs(offset) / secondsOfMinute;
  std::array<char, 64> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d%c%02d:%02d",
                    static_cast<int>(moment->date.year()), static_cast<unsigned>(moment->date.month()),
                    static_cast<unsigned>(moment->date.day()), moment->hour, moment->minute, moment->second,
                    offset < 0 ? '-' : '+', static_cast<int>(minutes / secondsOfMinute),
                    static_cast<int>(minutes % secondsOfMinute));
  return {text.data(), static_cast<std::size_t>(length)};
}

DateTime typedMoment(std::string_view text) {
  auto moment = parseGermanDateTime(text);
  if (!moment) moment = isoTime(text);
  if (moment) return *moment;
  throw ProgramError(
      ExitCode::BadInput, "'" + std::string(text) + "' is neither a date nor a date with a time",
      "Moments are written dd.mm.yyyy hh:mm:ss or yyyy-mm-ddThh:mm:ss; the time may be omitted.");
}

} // namespace qx::cli
