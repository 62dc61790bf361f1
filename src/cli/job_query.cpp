#include "cli/job_query.h"

#include "cli/exit_code.h"
#include "model/job_codes.h"
#include "model/text.h"
#include "platform/whole_number.h"

#include <algorithm>

namespace qx::cli {

JobBrief briefOf(Recordset& header) {
  const auto jobType = jobCode(header.value("JobType"));
  const bool contract = kindOf(jobType) == qxtjobverträge || kindOf(jobType) == qxtjobkundenverträge;
  return {header.text("JobID"), jobType,
          contract ? header.text("Vertragsnummer") : header.text("Kundennummer")};
}

std::optional<JobBrief> findJob(Connection& connection, std::string_view jobId) {
  const auto header = connection.open(
      sql("Select JobID, JobType, Kundennummer, Vertragsnummer From ImportKopf Where JobID = '"_sql,
          value(jobId), "'"_sql));
  if (header->eof()) return std::nullopt;
  return briefOf(*header);
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
