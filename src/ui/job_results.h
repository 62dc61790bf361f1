// The line that says how a command of the job view ended.
#pragma once

#include "engine/job_outcome.h"
#include "store/job_file_report.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// "27 erledigt, 3.033 zurückgestellt, 768 Fehler, 4.005 warten" of one or two runs; `waiting` is the number
/// of jobs that wait afterwards.
std::string runResult(const RunReport& run, std::int64_t waiting);
/// "95 Vorgänge und 131 Positionen eingelesen aus out.edi, 2 Zeilen abgelehnt"; empty when nothing was read.
std::string importResult(std::string_view file, const JobFileReport& report);
/// "95 Vorgänge und 131 Positionen geschrieben nach out.edi"; empty when nothing was written.
std::string exportResult(std::string_view file, const JobFileReport& report);
/// What a check of `checked` waiting jobs has found in `withFindings` of them.
std::string checkResult(std::size_t checked, std::size_t withFindings, std::int64_t waiting);

} // namespace qx
