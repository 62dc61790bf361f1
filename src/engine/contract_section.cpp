#include "engine/contract_section.h"

#include <utility>

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
             {[this](JobRow& job) { return processJob(job); },
              [this](JobRow& job, std::string_view reason) {
                marks_.markJobError(job, reason);
                return SectionRunner::refused(contracts, job, statusError);
              },
              [this](const JobRow& job) { processor_.foresee(job); }});
}

Findings ContractSection::refusalOf(JobRow& job) {
  const auto unprepared = unprepared_.find(job.text("JobID"));
  if (unprepared == unprepared_.end()) return processor_.process(job);
  marks_.markJobError(job, unprepared->second);
  return {Finding(Rule::ProcessingFailed, unprepared->second)};
}

JobResult ContractSection::processJob(JobRow& job) {
  if (Findings refused = refusalOf(job); !refused.empty())
    return SectionRunner::refused(contracts, job, statusError, std::move(refused));
  JobResult result = SectionRunner::result(contracts, job, statusDone);
  result.line.info = "Vertragsnummer: " + job.text("Vertragsnummer");
  appendLine(result.line.info, "Vertragsdatum: " + job.text("Vertragsdatum"));
  appendLine(result.line.info, "Kundennummer: " + job.text("Kundennummer"));
  return result;
}

} // namespace qx
