#include "engine/contract_check.h"

#include "engine/job_row.h"
#include "platform/conflict_retry.h"

namespace qx {
namespace {

bool knownState(std::string_view state) { return state == activeContract || skipsObjectChecks(state); }

JobState stateFor(CheckStatus status) {
  switch (status) {
  case CheckStatus::Warning:
    return JobState::Warning;
  case CheckStatus::Error:
    return JobState::Error;
  case CheckStatus::Clean:
    break;
  }
  return JobState::Waiting;
}

} // namespace

Findings ContractCheck::check(const JobFields& job, bool single) const {
  Findings findings = kind(job);
  findings.append(values(job, single));
  findings.append(object(job));
  return findings;
}

Findings ContractCheck::kind(const JobFields& job) const {
  const std::string kind = job("Vertragsart").text();
  if (skipsObjectChecks(contractState(job)) || masterData_.codeExists("Vertragsart", kind)) return {};
  return {Finding(Rule::ContractKind, kind)};
}

Findings ContractCheck::object(const JobFields& job) const {
  const std::string object = job("Artikelnummer").text();
  if (skipsObjectChecks(contractState(job)) || masterData_.VertragsgegenstandAngelegt(object)) return {};
  return {Finding(Rule::ContractObject, object)};
}

Findings ContractCheck::values(const JobFields& job, bool single) {
  Findings findings;
  const std::string state = contractState(job);
  if (job("Menge").number().value_or(0) <= 0)
    findings.add(
        Finding(single ? Rule::SingleContractQuantity : Rule::ContractQuantity, job("Menge").text()));
  if (!knownState(state)) findings.add(Finding(Rule::ContractState, state));
  const auto checkDate = [&](ColumnName field, NoDate none, Rule missing, Rule invalid) {
    const Value date = job(field);
    if (contractDate(date, none).isNull())
      findings.add(Finding(date.isEmpty() ? missing : invalid, date.text()));
  };
  checkDate("Vertragsdatum", NoDate::Midnight, Rule::ContractDateMissing, Rule::ContractDate);
  checkDate("Vertragsbeginn", NoDate::MidnightOrNoon, Rule::ContractBeginMissing, Rule::ContractBegin);
  return findings;
}

Findings ContractCheck::checkStaged(Recordset& header) const {
  const bool single = kindOf(jobCode(header.value("JobType"))) == qxtjobverträge;
  const auto position = openContractPositions(activeConnection(environment_), header.text("JobID"));
  const bool moved = single && !position->eof();
  const auto fields = [&](ColumnName column) -> Value {
    for (const ColumnName taken : contractPositionColumns)
      if (moved && taken == column && position->hasField(column)) return position->value(column);
    return header.hasField(column) ? header.value(column) : Value::null();
  };
  return check(fields, single);
}

CheckStatus ContractCheck::checkContract(std::string_view jobId) {
  return checkRows(sql("Select * From ImportKopf Where (JobType = 20 Or JobType = 21 Or JobType = 22 Or "
                       "JobType = 40 Or JobType = 41 Or JobType = 42) And JobID = '"_sql,
                       value(jobId), "'"_sql));
}

CheckStatus ContractCheck::checkCustomerContracts(std::string_view customer) {
  return checkRows(sql(
      "Select * From ImportKopf Where (JobType = 40 Or JobType = 41 Or JobType = 42) And Kundennummer = '"_sql,
      value(customer), "'"_sql));
}

CheckStatus ContractCheck::checkRows(const Sql& query) {
  StateFeed feed(environment_);
  feed.prepare();
  return doneAgainOnConflict(environment_, "check of contracts", [&] { return checkRowsOnce(query, feed); });
}

CheckStatus ContractCheck::checkRowsOnce(const Sql& query, StateFeed& feed) {
  feed.drop();
  MissingColumns missing(environment_.diagnostics);
  CheckStatus worst = CheckStatus::Clean;
  WorkUnit unit(activeConnection(environment_), nullptr, Join::IfOpen);
  const auto rows = activeConnection(environment_).open(query);
  for (; !rows->eof(); rows->moveNext()) {
    JobRow job(*rows, missing);
    const Findings findings = checkStaged(*rows);
    const CheckStatus status = findings.status();
    const Value severity(static_cast<std::int16_t>(status));
    const std::int16_t before = job.jobType();
    job.set("JobType", Value(withState(before, stateFor(status))));
    job.set("Status", severity);
    job.set("ImportType", severity);
    job.set("Fehlertext", emptyToNull(Value(findings.text())));
    job.update();
    if (job.jobType() != before) feed.note({job.text("JobID"), job.jobType(), {}, findings.text()});
    worst = worse(worst, status);
  }
  feed.write();
  unit.commit();
  return worst;
}

} // namespace qx
