#include "model/date.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace qx {
namespace {

/// Takes `least` to `most` digits from the front of the text.
std::optional<int> takeDigits(std::string_view& text, std::size_t least, std::size_t most) {
  std::size_t count = 0;
  int number = 0;
  while (count < text.size() && count < most && text[count] >= '0' && text[count] <= '9')
    number = number * 10 + (text[count++] - '0');
  if (count < least) return std::nullopt;
  text.remove_prefix(count);
  return number;
}

bool take(std::string_view& text, char expected) {
  if (text.empty() || text.front() != expected) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<int> takeYear(std::string_view& text) {
  const std::size_t before = text.size();
  const auto year = takeDigits(text, 2, 4);
  if (!year) return std::nullopt;
  switch (before - text.size()) {
  case 2:
    return *year <= 29 ? 2000 + *year : 1900 + *year;
  case 4:
    return year;
  default:
    return std::nullopt;
  }
}

bool setTime(DateTime& moment, std::optional<int> hour, std::optional<int> minute,
             std::optional<int> second) {
  if (!hour || *hour > 23 || !minute || *minute > 59 || !second || *second > 59) return false;
  moment.hour = *hour;
  moment.minute = *minute;
  moment.second = *second;
  return true;
}

bool takeTime(std::string_view& text, DateTime& moment) {
  const auto hour = takeDigits(text, 1, 2);
  if (!hour || !take(text, ':')) return false;
  const auto minute = takeDigits(text, 2, 2);
  std::optional<int> second = 0;
  if (take(text, ':')) second = takeDigits(text, 2, 2);
  return setTime(moment, hour, minute, second);
}

} // namespace

std::optional<DateTime> parseGermanDateTime(std::string_view text) {
  const auto day = takeDigits(text, 1, 2);
  if (!day || !take(text, '.')) return std::nullopt;
  const auto month = takeDigits(text, 1, 2);
  if (!month || !take(text, '.')) return std::nullopt;
  const auto year = takeYear(text);
  if (!year) return std::nullopt;
  DateTime moment;
  moment.date = makeDate(*year, static_cast<unsigned>(*month), static_cast<unsigned>(*day));
  if (!moment.date.ok()) return std::nullopt;
  if (!text.empty() && (!take(text, ' ') || !takeTime(text, moment) || !text.empty())) return std::nullopt;
  return moment;
}

std::optional<Date> parseGermanDate(std::string_view text) {
  const auto moment = parseGermanDateTime(text);
  if (!moment) return std::nullopt;
  return moment->date;
}

std::optional<Date> parseIsoDate(std::string_view text) {
  const auto year = takeDigits(text, 4, 4);
  if (!year || !take(text, '-')) return std::nullopt;
  const auto month = takeDigits(text, 2, 2);
  if (!month || !take(text, '-')) return std::nullopt;
  const auto day = takeDigits(text, 2, 2);
  if (!day) return std::nullopt;
  const Date date = makeDate(*year, static_cast<unsigned>(*month), static_cast<unsigned>(*day));
  if (!date.ok()) return std::nullopt;
  if (text.empty()) return date;
  DateTime moment;
  if ((!take(text, 'T') && !take(text, ' ')) || !takeTime(text, moment)) return std::nullopt;
  if (take(text, '.') && !takeDigits(text, 1, 9)) return std::nullopt;
  if (take(text, 'Z') || text.empty()) return text.empty() ? std::optional(date) : std::nullopt;
  DateTime zone;
  if ((!take(text, '+') && !take(text, '-')) || !takeTime(text, zone) || !text.empty()) return std::nullopt;
  return date;
}

std::optional<Date> parseDate(std::string_view text) {
  const auto german = parseGermanDate(text);
  return german ? german : parseIsoDate(text);
}

std::optional<DateTime> parseTimeStamp(std::string_view text) {
  const auto year = takeDigits(text, 4, 4);
  const auto month = takeDigits(text, 2, 2);
  const auto day = takeDigits(text, 2, 2);
  if (!year || !month || !day) return std::nullopt;
  DateTime moment;
  moment.date = makeDate(*year, static_cast<unsigned>(*month), static_cast<unsigned>(*day));
  if (!moment.date.ok()) return std::nullopt;
  if (text.empty()) return moment;
  const auto hour = takeDigits(text, 2, 2);
  const auto minute = takeDigits(text, 2, 2);
  const auto second = takeDigits(text, 2, 2);
  if (!text.empty() || !setTime(moment, hour, minute, second)) return std::nullopt;
  return moment;
}

std::string germanDate(const Date& date) {
  std::array<char, 24> buffer{};
  const int length =
      std::snprintf(buffer.data(), buffer.size(), "%02u.%02u.%04d", static_cast<unsigned>(date.day()),
                    static_cast<unsigned>(date.month()), static_cast<int>(date.year()));
  return {buffer.data(), static_cast<std::size_t>(length)};
}

std::string timeStamp(const DateTime& moment) {
  std::array<char, 40> buffer{};
  const int length =
      std::snprintf(buffer.data(), buffer.size(), "%04d%02u%02u%02d%02d%02d",
                    static_cast<int>(moment.date.year()), static_cast<unsigned>(moment.date.month()),
                    static_cast<unsigned>(moment.date.day()), moment.hour, moment.minute, moment.second);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

std::string dayStamp(const Date& date) { return timeStamp(DateTime{date, 0, 0, 0}); }

} // namespace qx
