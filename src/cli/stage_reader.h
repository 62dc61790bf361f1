// Reads a file of jobs.
#pragma once

#include "cli/job_assembler.h"
#include "cli/text_source.h"

namespace qx::cli {

/// Reads an array of objects, a single object or one object after the other, whatever its size, and gives
/// them to the assembler. Raises `ProgramError` with the line for everything that is no such file.
void readJobs(TextSource& source, JobAssembler& assembler);

} // namespace qx::cli
