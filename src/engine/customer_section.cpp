#include "engine/customer_section.h"

#include <utility>

namespace qx {
namespace {

constexpr Section customers{"Kunden", "Kunden werden verarbeitet...", {qxtjobkunden, 0}, "Kundennummer"};

std::string info(const JobRow& job, bool isNew) {
  std::string text = isNew ? "Neukunde angelegt." : "Kunde geändert.";
  appendLine(text, "Bez1: " + job.text("Bez1"));
  appendLine(text, "Bez2: " + job.text("Bez2"));
  appendLine(text, "Bez3: " + job.text("Bez3"));
  return text;
}

} // namespace

void CustomerSection::run(SectionRunner& runner) {
  runner.run(customers,
             sql("Select * From ImportKopf Where JobType = "_sql, number(qxtjobkunden),
                 " Order By Kundennummer"_sql),
             {[this](JobRow& job) { return processJob(job); },
              [this](JobRow& job, std::string_view reason) {
                run_.marks.markJobError(job, reason);
                return failed(job);
              },
              [this](const JobRow& job) { foresee(job); }, 2});
}

void CustomerSection::foresee(const JobRow& job) {
  if (isChecked(job)) check_.ProveCustomerJob(job.text("JobID"));
  processor_.foresee(job);
}

bool CustomerSection::isChecked(const JobRow& job) const {
  return !run_.unevaluated && run_.options.automatic && !job.released();
}

JobResult CustomerSection::processJob(JobRow& job) {
  if (isChecked(job)) {
    Findings findings = park(job);
    if (const CheckStatus status = findings.status(); status != CheckStatus::Clean)
      return SectionRunner::refused(
          customers, job, status == CheckStatus::Warning ? statusWarning : statusError, std::move(findings));
  }
  CustomerProcessor::Outcome written = processor_.process(job);
  if (written.result == CustomerProcessor::Result::Failed) return failed(job, std::move(written.findings));
  const bool isNew = written.result == CustomerProcessor::Result::Created;
  JobResult result = SectionRunner::result(customers, job, statusDone);
  result.line.info = info(job, isNew);
  result.line.newCustomer = isNew;
  result.addHints(std::move(written.findings));
  return indexed(job, std::move(result));
}

JobResult CustomerSection::failed(const JobRow& job, Findings findings) {
  return indexed(job, SectionRunner::refused(customers, job, statusError, std::move(findings)));
}

/// The search index is updated for the customer of a failed job as well.
JobResult CustomerSection::indexed(const JobRow& job, JobResult result) {
  result.indexedCustomer = job.text("Kundennummer");
  return result;
}

/// A job with findings is marked and not written.
Findings CustomerSection::park(JobRow& job) {
  if (!job.value("Fehlertext").isEmpty()) {
    job.set("Fehlertext", Value(""));
    job.update();
  }
  Findings findings = check_.ProveCustomerJob(job.text("JobID"));
  if (findings.status() == CheckStatus::Warning)
    JobMarks::markJobWarning(job, announced(findings));
  else if (findings.status() == CheckStatus::Error)
    run_.marks.markJobError(job, announced(findings));
  return findings;
}

} // namespace qx
