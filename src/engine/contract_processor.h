// Writes one contract job into the contract table.
#pragma once

#include "engine/contract_line.h"
#include "engine/findings.h"
#include "engine/job_row.h"
#include "engine/run_context.h"

namespace qx {

/// Checks a contract job and adds or updates its line.
class ContractProcessor {
public:
  explicit ContractProcessor(RunContext& run)
      : environment_(run.environment), marks_(run.marks), events_(run.events) {}

  /// Returns why the contract was not written; empty when it was. The line and the job's done code are
  /// written together. A failed job is marked with every reason that was found and its line is not written.
  Findings process(JobRow& job);
  /// Reads what `process` will.
  void foresee(const JobRow& job);

private:
  void checkCustomer(const ContractKey& key, Findings& refused);
  void checkObject(const ContractKey& key, Findings& refused);
  static void checkNumber(const Value& staged, Rule tooLarge, Rule noNumber, Findings& refused);
  void save(JobRow& job, Recordset& line, const JobFields& fields);
  bool any(const Sql& statement);

  Environment& environment_;
  JobMarks& marks_;
  EventSource& events_;
};

} // namespace qx
