#include "engine/job_outcome.h"

namespace qx {

void RunReport::count(const JobOutcome& outcome) {
  ++processed;
  switch (stateOf(outcome.jobType)) {
  case JobState::Done:
    ++done;
    break;
  case JobState::Warning:
    ++warning;
    break;
  default:
    ++error;
    break;
  }
}

void RunReport::leave(std::string_view jobId, std::string_view reason) {
  left.try_emplace(std::string(jobId), reason);
}

RunEntry entryOf(const RunReport& report) {
  RunEntry entry;
  entry.outcome = report.end == RunEnd::Completed ? "completed"
                  : report.end == RunEnd::Stopped ? "stopped"
                  : report.end == RunEnd::Refused ? "refused"
                                                  : "broken";
  entry.processed = static_cast<std::int64_t>(report.processed);
  entry.done = static_cast<std::int64_t>(report.done);
  entry.warning = static_cast<std::int64_t>(report.warning);
  entry.error = static_cast<std::int64_t>(report.error);
  entry.waiting = static_cast<std::int64_t>(report.stillWaiting);
  entry.protocol = report.protocolId;
  return entry;
}

} // namespace qx
