// Checks staged jobs of any kind without changing them.
#pragma once

#include "engine/import_job_object2.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// The findings of a check, one text each.
struct JobFindings {
  CheckStatus status = CheckStatus::Clean;
  std::vector<std::string> texts;
};

/// Null for a kind that has no check.
std::optional<JobFindings> checkJob(ImportJobObject2& engine, std::string_view jobId, std::int16_t jobType);

} // namespace qx::cli
