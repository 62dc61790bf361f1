// Reads a file of jobs.
#pragma once

#include "cli/job_assembler.h"
#include "cli/text_source.h"

#include <string_view>

namespace qx::cli {

/// The property that a file of rejected objects adds to each; it is passed over when that is read.
inline constexpr std::string_view rejectedProperty = "rejected";

/// Reads an array of objects, a single object or a sequence of objects of any size and passes them to the
/// assembler, until that has as many faults as it takes. Raises `ProgramError` with the line and one fault
/// for anything else.
void readJobs(TextSource& source, JobAssembler& assembler);

} // namespace qx::cli
