// Turns a plain job file into a scrambled one and back.
#pragma once

#include "store/job_file_report.h"
#include "store/job_file_target.h"

#include <string_view>

namespace qx {

enum class Scrambling : std::uint8_t { Scramble, Unscramble };

/// Writes the other form of a job file of either version to `targetName`, which may be the file itself. Each
/// physical line is a text of its own; the first line carries the banner of the other form. A file that does
/// not have the requested form is refused as `WrongBanner`.
///
/// Constant memory. Never raises: failures are in the report and the diagnostics and leave the target
/// unchanged.
JobFileReport scrambleJobFile(Environment& environment, std::string_view fileName,
                              std::string_view targetName, Scrambling scrambling,
                              JobFileObserver* observer = nullptr);
/// The same directly into an open file, which a failure leaves half written.
JobFileReport scrambleJobFile(Environment& environment, std::string_view fileName, const OpenFile& target,
                              Scrambling scrambling, JobFileObserver* observer = nullptr);

} // namespace qx
