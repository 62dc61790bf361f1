// Writes the staged jobs to a job file.
#pragma once

#include "store/job_file_report.h"
#include "store/job_file_target.h"
#include "store/job_list.h"

#include <string_view>

namespace qx {

/// Exports every job of a kind that job files know, and every position, from the shared connection. Version 1
/// writes each job followed by its positions, with the columns of that version. The plain form is always
/// written. Constant memory, whatever the number of jobs.
///
/// All lines show one state of the database, whatever others write meanwhile. A target that belongs to the
/// database or the installation (`protectedFiles`) is refused.
///
/// With `only` the jobs of these keys are written and the positions that belong to them.
///
/// Never raises: failures are in the report and the diagnostics. After a failure the file holds the lines
/// written up to it.
JobFileReport exportJobFile(Environment& environment, std::string_view fileName, JobFileVersion version,
                            JobFileObserver* observer = nullptr, const JobKeys* only = nullptr);
/// The same directly into an open file.
JobFileReport exportJobFile(Environment& environment, const OpenFile& file, JobFileVersion version,
                            JobFileObserver* observer = nullptr);

} // namespace qx
