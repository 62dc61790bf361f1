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

} // namespace qx
