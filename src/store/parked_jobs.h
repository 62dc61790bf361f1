// The jobs that wait: for the run, or for the clerk, why they were parked and their release.
#pragma once

#include "model/job_codes.h"
#include "platform/environment.h"
#include "store/job_list.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Whether a job of this code waits for the clerk: it has warnings or errors.
constexpr bool isParked(std::int16_t jobType) {
  return stateOf(jobType) == JobState::Warning || stateOf(jobType) == JobState::Error;
}

/// The parked jobs of the list that the next run takes again as they are.
struct ReleasedJobs {
  JobKeys keys;
  JobCounts counts; ///< of warnings and errors
};

/// Here and below database errors reach the caller.
ReleasedJobs readReleasedJobs(Connection& connection);

/// Releases those of the jobs that are parked, or takes their release back, as one unit of work. Returns the
/// number of jobs that were changed. `wait` decides how long the start of the unit waits.
std::size_t setReleased(Environment& environment, const std::vector<std::string>& jobIds, bool released,
                        BusyWait* wait = nullptr);

/// Passes key and reasons (`Fehlertext`) of each parked job of the filter.
void forEachReason(Connection& connection, const JobListFilter& filter,
                   const std::function<void(const std::string& jobId, const std::string& reasons)>& take);

/// The keys of all jobs that wait for the run and can be opened.
std::vector<std::string> waitingJobs(Connection& connection);

/// The keys of the contracts that came with a customer and are deleted with its job.
std::vector<std::string> contractsWithCustomer(Connection& connection, std::string_view customer);

} // namespace qx
