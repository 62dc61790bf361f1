// The banner: the first line of a job file, which tells its form.
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
  bool textBehind = false; ///< the line goes on after the banner field
};

/// The form of a file that begins with this line, null when it is no job file. Only the characters of the
/// banner count: 23 of version 2, 25 of version 1.
std::optional<JobFileForm> plainForm(std::string_view firstLine);
std::optional<JobFileForm> scrambledForm(std::string_view firstLine, const Scrambler& scrambler);

/// The scrambler of this installation, with the tables of its application directory or else the default ones.
/// Raises `std::runtime_error` when the tables cannot be used.
Scrambler installedScrambler(Environment& environment);

} // namespace qx
