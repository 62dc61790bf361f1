// Calendar dates and points in time, and their German text forms.
#pragma once

#include <chrono>
#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// A day of the proleptic Gregorian calendar.
using Date = std::chrono::year_month_day;

/// A day with a time of day, to the second; no time zone.
struct DateTime {
  Date date{std::chrono::year{1899}, std::chrono::month{12}, std::chrono::day{30}};
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

/// Shorthand for literals: `makeDate(2026, 11, 24)`.
constexpr Date makeDate(int year, unsigned month, unsigned day) {
  return Date{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
}

/// Reads d.m.yyyy, dd.mm.yyyy and dd.mm.yy (00-29 is 20xx, 30-99 is 19xx), each with an optional time of day
/// "hh:mm" or "hh:mm:ss" after a blank. Null for every other text and for days that do not exist.
std::optional<DateTime> parseGermanDateTime(std::string_view text);

/// The day of `parseGermanDateTime`.
std::optional<Date> parseGermanDate(std::string_view text);

/// Reads the ISO form "yyyy-mm-dd", alone or before "T" or a blank and a time of day with or without a zone.
/// The day is taken as it is written. Null for every other text and for days that do not exist.
std::optional<Date> parseIsoDate(std::string_view text);

/// A day in the German or the ISO form.
std::optional<Date> parseDate(std::string_view text);

/// Reads a time stamp: the eight digits "yyyymmdd" or all fourteen. Null for every other text and for times
/// that do not exist.
std::optional<DateTime> parseTimeStamp(std::string_view text);

/// "dd.mm.yyyy" with leading zeros.
std::string germanDate(const Date& date);

/// The 14 digits "yyyymmddhhnnss"; texts of this form compare in time order.
std::string timeStamp(const DateTime& moment);

/// The time stamp of midnight: "yyyymmdd000000".
std::string dayStamp(const Date& date);

} // namespace qx
