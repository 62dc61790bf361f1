// Stages a file of jobs.
#pragma once

#include "cli/command.h"
#include "platform/bulk_staging.h"
#include "program/input_fault.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qx::cli {

/// How a file is staged.
struct StageOrder {
  bool again = false;   ///< done jobs, too
  bool partial = false; ///< the sound objects of a file that has faults, too
  bool unique = false;  ///< no job whose content was handed over under another key
  bool tryOnly = false; ///< nothing is staged; only what would be is found out
  /// A part of the unit in which the jobs are staged; it may be called again when that gave way to another
  /// program's. Not for a partial order.
  std::function<void()> alongside{};
  std::string rejects{}; ///< the name of a new file for the other objects; empty for none
};

/// The result for a file.
struct StagedJobs {
  std::unique_ptr<BulkStaging> jobs;      ///< counts and results
  std::vector<InputFault> faults;         ///< of the objects that were left out, in the order of the file
  std::vector<std::string> writtenBefore; ///< keys of orders that were done and wait again
};

/// Stages a file, or standard input for "-", in one unit. Raises `ProgramError` with all faults of the file,
/// at most the first hundred, when there is one and the order is not a partial one; nothing is staged then.
StagedJobs stageFile(const CommandContext& context, const std::string& file, const StageOrder& order);

} // namespace qx::cli
