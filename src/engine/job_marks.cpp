#include "engine/job_marks.h"

#include "engine/finding_terms.h"

namespace qx {
namespace {

constexpr std::size_t limit = 1U << 20U;

} // namespace

void appendLine(std::string& text, std::string_view line) {
  if (!text.empty()) text += crlf;
  text += line;
}

void CollectedText::clear() {
  text_.clear();
  leftOut_ = 0;
}

void CollectedText::add(std::string_view line) {
  if (leftOut_ > 0 || text_.size() + line.size() > limit)
    ++leftOut_;
  else
    appendLine(text_, line);
}

std::string CollectedText::text() const {
  if (leftOut_ == 0) return text_;
  std::string all = text_;
  appendLine(all, "... und " + std::to_string(leftOut_) + " weitere");
  return all;
}

void JobMarks::markJobWarning(JobRow& job, std::string_view text) { mark(job, JobState::Warning, text); }

void JobMarks::markJobError(JobRow& job, std::string_view text) {
  const std::int16_t before = job.jobType();
  errors_(before, text);
  mark(job, JobState::Error, text);
  // Only the change from waiting to failed marks the customer's jobs, not a later message of the same job.
  if (before == qxtjobkundenverträge) markCustomerJobsOfContract(job.text("Kundennummer"));
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
  // Completed on purpose: the original statement lacks its comparison and the columns required for marking.
  const auto jobs = environment_.connection->open(
      sql("Select JobType, Fehlertext, JobID From ImportKopf Where Kundennummer = '"_sql, value(customer),
          "' And (JobType = 10 or JobType = 13)"_sql));
  const std::string_view reason = terms(Rule::CustomerContractErrors).run;
  for (; !jobs->eof(); jobs->moveNext()) {
    JobRow job(*jobs, missing_);
    const std::int16_t before = job.jobType();
    errors_(before, reason);
    mark(job, JobState::Error, reason);
    if (job.jobType() != before) changes_({job.text("JobID"), job.jobType(), {}, job.text("Fehlertext")});
  }
}

} // namespace qx
