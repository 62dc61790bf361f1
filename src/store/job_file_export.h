// Writes the staged jobs to a job file.
#pragma once

#include "store/job_file_report.h"

#include <string_view>

namespace qx {

/// Exports every job of a kind that job files know, and every position, from the shared connection. Version 1
/// writes each job followed by its positions, with the columns of that version. The plain form is always
/// written. Constant memory, whatever the number of jobs.
///
/// All lines show the database in one state, whatever others write meanwhile. A target that belongs to the
/// database or the installation (`protectedFiles`) is refused.
///
/// Never raises: what went wrong is in the report and in the diagnostics. After a failure the lines written
/// up to it stand in the file.
JobFileReport exportJobFile(Environment& environment, std::string_view fileName, JobFileVersion version,
                            JobFileObserver* observer = nullptr);

} // namespace qx
