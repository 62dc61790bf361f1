#include "engine/job_check.h"

#include "engine/contract_check.h"
#include "engine/customer_check.h"
#include "engine/hints.h"
#include "engine/order_check.h"
#include "platform/failure.h"
#include "settings/settings.h"

#include <exception>
#include <string>
#include <utility>

namespace qx {

JobCheck::JobCheck(Environment& environment, bool withComing)
    : environment_(environment), withComing_(withComing), prices_(environment) {
  const Settings settings(environment, SettingTrap::Refusals);
  compareAddresses_ = settings[option::compareAddresses];
  automatic_ = settings[option::automatic];
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
    const OrderCheck check(environment_, orderOptions_);
    Findings hints;
    Findings findings =
        customerToCome(check.CheckAuftrag(jobId, facts, &hints), header->text("Kundennummer"));
    findings.append(std::move(hints));
    return withHints(std::move(findings));
  }
  default:
    return {};
  }
}

/// An unknown customer is no objection to an order when a job beside it creates that customer first.
Findings JobCheck::customerToCome(Findings findings, std::string_view customer) {
  if (!withComing_ || customer.empty() || !findings.holds(Rule::OrderCustomer)) return findings;
  const auto waiting =
      activeConnection(environment_)
          .open(sql("Select JobID From ImportKopf Where JobType = 10 And Kundennummer = '"_sql,
                    value(customer), "'"_sql));
  if (waiting->eof()) return findings;
  const std::string jobId = waiting->text("JobID");
  const CheckStatus status = CustomerCheck(environment_, compareAddresses_).ProveCustomerJob(jobId).status();
  // A run parks such a customer.
  if (status == CheckStatus::Error || (automatic_ && status == CheckStatus::Warning)) return findings;
  Findings remaining;
  for (const Finding& finding : findings)
    remaining.add(finding.rule == Rule::OrderCustomer ? Finding(Rule::OrderCustomerWaits, jobId) : finding);
  return remaining;
}

} // namespace qx
