// Finds staged jobs by their key.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// What a command needs to know about a job before working on it.
struct JobBrief {
  std::string jobId;
  std::int16_t jobType = 0;
  std::string number; ///< by which the protocol names the job before it is written
};

/// From a row with `JobID`, `JobType`, `Kundennummer` and `Vertragsnummer`.
JobBrief briefOf(Recordset& header);

/// Null when no job has this key.
std::optional<JobBrief> findJob(Connection& connection, std::string_view jobId);

/// The jobs of these keys, in order and without duplicates. Raises `ProgramError` for an unknown key.
std::vector<JobBrief> findJobs(Connection& connection, const std::vector<std::string>& jobIds);

} // namespace qx::cli
