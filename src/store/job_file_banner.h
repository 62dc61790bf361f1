// The first line of a job file tells what the rest is.
#pragma once

#include "platform/environment.h"
#include "store/job_file_report.h"

#include <optional>
#include <string_view>

namespace qx {

class Scrambler;

struct JobFileForm {
  JobFileVersion version = JobFileVersion::Two;
  bool scrambled = false;
  bool textBehind = false; ///< something stands on the line behind the field of the banner
};

/// The form of a file that begins with this line, null when it is no job file. Only the characters of the
/// banner count: 23 of version 2, 25 of version 1.
std::optional<JobFileForm> plainForm(std::string_view firstLine);
std::optional<JobFileForm> scrambledForm(std::string_view firstLine, const Scrambler& scrambler);

/// The scrambler of this installation: with the tables of its application directory, or with the default ones
/// where there are none. Raises `std::runtime_error` when the tables cannot be used.
Scrambler installedScrambler(Environment& environment);

} // namespace qx
