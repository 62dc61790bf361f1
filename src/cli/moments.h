// Moments as they are printed and typed, and their place among those of other zones.
#pragma once

#include "model/date.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx::cli {

/// Seconds of the epoch of a local time.
std::int64_t secondsOf(const DateTime& local);

/// "2026-11-24T10:30:00+01:00" of the stamp of a local time; any other text as it is.
std::string isoMoment(const std::string& stamp);

/// A moment as it is typed, as a local time: a day (its midnight), dd.mm.yyyy hh:mm[:ss], or the ISO form,
/// with a zone too. Raises `ProgramError` for another text.
DateTime typedMoment(std::string_view text);

} // namespace qx::cli
