#include "engine/contract_section.h"

namespace qx {
namespace {

constexpr Section contracts{"Vertrag",
                            "Verträge werden überprüft und verarbeitet...",
                            {qxtjobkundenverträge, qxtjobverträge},
                            "Vertragsnummer"};

} // namespace

void ContractSection::run(SectionRunner& runner) {
  runner.run(contracts,
             sql("Select * From ImportKopf Where JobType = "_sql, number(qxtjobkundenverträge),
                 " Or JobType = "_sql, number(qxtjobverträge), " Order by Kundennummer"_sql),
             [this](JobRow& job) { return processJob(job); });
}

/// Writes the job, or marks it as failed.
bool ContractSection::fits(JobRow& job) {
  const auto unprepared = unprepared_.find(job.text("JobID"));
  if (unprepared == unprepared_.end()) return processor_.process(job);
  marks_.markJobError(job, unprepared->second);
  return false;
}

JobResult ContractSection::processJob(JobRow& job) {
  if (!fits(job)) return SectionRunner::refused(contracts, job, statusError);
  JobResult result;
  result.line.process = contracts.process;
  result.line.number = job.text("Vertragsnummer");
  result.line.status = statusDone;
  result.line.date = job.text("Eingangsdatum");
  result.line.info = "Vertragsnummer: " + job.text("Vertragsnummer");
  appendLine(result.line.info, "Vertragsdatum: " + job.text("Vertragsdatum"));
  appendLine(result.line.info, "Kundennummer: " + job.text("Kundennummer"));
  return result;
}

} // namespace qx
