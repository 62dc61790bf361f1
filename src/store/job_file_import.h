// Reads a job file into the staging tables.
#pragma once

#include "platform/database.h"
#include "store/job_file_report.h"

#include <string_view>

namespace qx {

/// Imports a job file, plain or scrambled, into the shared connection's staging tables. Rows of the same key
/// are overwritten, so that importing a file twice adds nothing. A defective record is refused with its line
/// number and the rest is read. In a version-2 file positions may stand before their headers; in a version-1
/// file they follow them.
///
/// On a connection of our own records are stored in groups; `wait` decides how long the start of a group
/// waits for another program (null: the connection's own limit). Lets the message loop run between units.
/// Memory does not grow with the file.
///
/// Never raises: failures are in the report and the diagnostics.
JobFileReport importJobFile(Environment& environment, std::string_view fileName, JobFileVersion version,
                            JobFileObserver* observer = nullptr, BusyWait* wait = nullptr);

/// Reports to the observer which done jobs an import of this file would reset, in the order of the file;
/// nothing is stored. Never raises; refusing a file is left to the import.
void previewSetBacks(Environment& environment, std::string_view fileName, JobFileVersion version,
                     JobFileObserver& observer);

} // namespace qx
