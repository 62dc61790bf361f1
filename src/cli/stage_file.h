// The staging of one file, for the commands that do it.
#pragma once

#include "cli/command.h"
#include "cli/text_source.h"
#include "platform/bulk_staging.h"

#include <functional>

namespace qx::cli {

/// Stages the jobs of a file in one unit of work, of which `alongside` is a part; it may be called again when
/// the unit gave way to another program's. Draws a bar. Raises `ProgramError` for a file that cannot be
/// staged, and then nothing of it is.
void stageFile(const CommandContext& context, TextFile& source, BulkStaging& jobs, bool again,
               const std::function<void()>& alongside);

} // namespace qx::cli
