// Finds staged jobs by their key.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// What a command needs to know of a job before it works on it.
struct JobBrief {
  std::string jobId;
  std::int16_t jobType = 0;
  std::string number; ///< by which the protocol names it while it is not written
};

/// Of a row that holds `JobID`, `JobType`, `Kundennummer` and `Vertragsnummer`.
JobBrief briefOf(Recordset& header);

/// Null when there is no job of this key.
std::optional<JobBrief> findJob(Connection& connection, std::string_view jobId);

/// The jobs of these keys in their order, each once. Raises `ProgramError` for a key that no job has.
std::vector<JobBrief> findJobs(Connection& connection, const std::vector<std::string>& jobIds);

} // namespace qx::cli
