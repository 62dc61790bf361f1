#include "engine/job_check.h"

#include "engine/contract_check.h"
#include "engine/customer_check.h"
#include "engine/hints.h"
#include "engine/order_check.h"
#include "platform/failure.h"
#include "settings/settings.h"

#include <exception>
#include <string>

namespace qx {

JobCheck::JobCheck(Environment& environment) : environment_(environment), prices_(environment) {
  const Settings settings(environment, SettingTrap::Refusals);
  compareAddresses_ = settings[option::compareAddresses];
  homeCurrency_ = settings[option::homeCurrency];
  orderOptions_ = OrderOptions::read(settings, settings[option::customerSpecific]);
}

Findings JobCheck::check(std::string_view jobId) {
  Findings findings;
  trapped(
      environment_.diagnostics, {"check of a job", jobId, &isFatal}, [&] { findings = findingsOf(jobId); },
      [&](const std::exception& error) { findings = {Finding(Rule::CheckFailed, germanCause(error))}; });
  return findings;
}

Findings JobCheck::findingsOf(std::string_view jobId) {
  const auto header = activeConnection(environment_)
                          .open(sql("SELECT * From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql));
  if (header->eof()) return {};
  const auto jobType = jobCode(header->value("JobType"));
  if (stateOf(jobType) > JobState::Error) return {};
  const auto withHints = [&](Findings findings) {
    findings.append(
        jobHints(activeConnection(environment_), kindOf(jobType), fieldsOf(*header), homeCurrency_));
    return findings;
  };
  switch (kindOf(jobType)) {
  case qxtjobkunden:
    return withHints(CustomerCheck(environment_, compareAddresses_).ProveCustomerJob(jobId));
  case qxtjobverträge:
  case qxtjobkundenverträge:
    return ContractCheck(environment_).checkStaged(*header);
  case qxtJobAufträge: {
    OrderFacts facts(environment_, prices_, fieldsOf(*header));
    return withHints(OrderCheck(environment_, orderOptions_).CheckAuftrag(jobId, facts));
  }
  default:
    return {};
  }
}

} // namespace qx
