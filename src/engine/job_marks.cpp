#include "engine/job_marks.h"

#include "engine/finding_terms.h"

namespace qx {
namespace {

/// Whether a failing customer contract marks the jobs of its customer; it does in every run.
constexpr bool customerErrorFlag = true;

} // namespace

void JobMarks::markJobWarning(JobRow& job, std::string_view text) { mark(job, JobState::Warning, text); }

void JobMarks::markJobError(JobRow& job, std::string_view text) {
  const std::int16_t before = job.jobType();
  errors_(before, text);
  mark(job, JobState::Error, text);
  // Only the step from waiting to failed passes the customer on, not a later message of the same job.
  if (before == qxtjobkundenverträge && customerErrorFlag)
    markCustomerJobsOfContract(job.text("Kundennummer"));
}

void JobMarks::mark(JobRow& job, JobState state, std::string_view text) {
  const std::int16_t jobType = job.jobType();
  if (isWaitingHeader(jobType)) job.set("JobType", Value(withState(jobType, state)));
  std::string reasons = job.text("Fehlertext");
  appendLine(reasons, text);
  job.set("Fehlertext", Value(std::move(reasons)));
  job.update();
}

void JobMarks::markCustomerJobsOfContract(std::string_view customer) {
  // Completed on purpose: the statement was handed down without its comparison, and without the columns that
  // marking needs.
  const auto jobs = environment_.connection->open(
      sql("Select JobType, Fehlertext, JobID From ImportKopf Where Kundennummer = '"_sql, value(customer),
          "' And (JobType = 10 or JobType = 13)"_sql));
  const std::string_view reason = terms(Rule::CustomerContractErrors).run;
  for (; !jobs->eof(); jobs->moveNext()) {
    JobRow job(*jobs, missing_);
    errors_(job.jobType(), reason);
    mark(job, JobState::Error, reason);
  }
}

} // namespace qx
