// Reads a file of jobs.
#pragma once

#include "cli/job_assembler.h"
#include "cli/text_source.h"

namespace qx::cli {

/// Reads an array of objects, a single object or a sequence of objects of any size and passes them to the
/// assembler. Raises `ProgramError` with the line for anything else.
void readJobs(TextSource& source, JobAssembler& assembler);

} // namespace qx::cli
