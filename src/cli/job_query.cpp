#include "cli/job_query.h"

#include "cli/exit_code.h"
#include "rules/german_text.h"

#include <algorithm>

namespace qx::cli {

std::optional<JobBrief> findJob(Connection& connection, std::string_view jobId) {
  const auto row = connection.open(
      sql("Select JobID, JobType, Kundennummer, ProcessWarning From ImportKopf Where JobID = '"_sql,
          value(jobId), "'"_sql));
  if (row->eof()) return std::nullopt;
  JobBrief job;
  job.jobId = row->text("JobID");
  job.jobType = static_cast<std::int16_t>(row->value("JobType").integer().value_or(0));
  job.customer = row->text("Kundennummer");
  job.released = row->value("ProcessWarning").integer().value_or(0) != 0;
  return job;
}

std::vector<JobBrief> findJobs(Connection& connection, const std::vector<std::string>& jobIds) {
  std::vector<JobBrief> jobs;
  for (const std::string& jobId : jobIds) {
    auto job = findJob(connection, jobId);
    if (!job)
      throw ProgramError(ExitCode::BadInput, "there is no job '" + jobId + "'",
                         "Nothing was changed. 'qximportjob list' shows the jobs.");
    const bool known =
        std::ranges::any_of(jobs, [&](const JobBrief& other) { return equalCodes(other.jobId, job->jobId); });
    if (!known) jobs.push_back(std::move(*job));
  }
  return jobs;
}

} // namespace qx::cli
