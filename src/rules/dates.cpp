#include "rules/dates.h"

#include "model/text.h"

#include <stdexcept>

namespace qx {
namespace {

/// The dates with the day numbers 999999 and 463711, counted from 30.12.1899.
constexpr Date openEnd = makeDate(4637, 11, 25);
constexpr Date openEndOfOldData = makeDate(3169, 8, 5);

} // namespace

std::string intdat(const Value& SystemDatum) {
  if (const auto moment = SystemDatum.moment()) return dayStamp(moment->date);
  const auto date = parseGermanDate(trimBlanks(SystemDatum.textView()));
  if (!date || static_cast<int>(date->year()) == 0)
    throw std::invalid_argument("'" + SystemDatum.text() + "' is not a date");
  return dayStamp(*date);
}

std::string germanDay(const Value& SystemDatum) {
  if (const auto moment = SystemDatum.moment()) return germanDate(moment->date);
  const auto date = parseGermanDate(SystemDatum.textView());
  return date ? germanDate(*date) : SystemDatum.text();
}

Date NowEx(const Environment& environment) {
  if (environment.session) return environment.session->GetSessionDate();
  environment.diagnostics.report({"NowEx", "without a session the date is the workstation's", {}});
  return environment.clock.now().date;
}

std::string PeriodOf(const Date& date) {
  if (date == openEnd || date == openEndOfOldData) return "999999";
  return dayStamp(date).substr(0, 6);
}

} // namespace qx
