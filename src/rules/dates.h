// The current date of all decisions, and dates as stamps and periods.
#pragma once

#include "platform/environment.h"

#include <string>

namespace qx {

/// The time stamp of midnight on the day of a point in time or German date text. Raises
/// `std::invalid_argument`, which names the value, for anything else, null and "" included.
std::string intdat(const Value& SystemDatum);

/// The day of a point in time or of a German date text as "dd.mm.yyyy", without the time of day; anything
/// else is returned unchanged.
std::string germanDay(const Value& SystemDatum);

/// The session's current date; without a session the workstation's, with a diagnostics entry. Exceptions of
/// the session reach the caller.
Date NowEx(const Environment& environment);

/// "yyyymm", or "999999" for one of the two dates that mean an open end.
std::string PeriodOf(const Date& date);

} // namespace qx
