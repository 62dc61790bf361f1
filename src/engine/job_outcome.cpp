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

} // namespace qx
