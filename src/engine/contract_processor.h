// Writes one contract job into the contract table.
#pragma once

#include "engine/contract_line.h"
#include "engine/event_source.h"
#include "engine/job_marks.h"
#include "engine/job_row.h"
#include "platform/environment.h"

#include <string_view>

namespace qx {

/// Checks a contract job and adds or updates its line.
class ContractProcessor {
public:
  ContractProcessor(Environment& environment, JobMarks& marks, EventSource& events)
      : environment_(environment), marks_(marks), events_(events) {}

  /// True when the line was written; the line and the job's done code are written together. A failed job is
  /// marked with every reason that was found and its line is not written.
  bool process(JobRow& job);

private:
  bool checkCustomer(JobRow& job, const ContractKey& key);
  bool checkObject(JobRow& job, const ContractKey& key);
  bool checkNumber(JobRow& job, ColumnName field, std::string_view failure);
  void save(JobRow& job, Recordset& line, const JobFields& fields);
  bool any(const Sql& statement);

  Environment& environment_;
  JobMarks& marks_;
  EventSource& events_;
};

} // namespace qx
