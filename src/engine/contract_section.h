// The contract section of a run.
#pragma once

#include "engine/contract_preparation.h"
#include "engine/contract_processor.h"
#include "engine/section_runner.h"

namespace qx {

/// Writes the waiting contracts and customer contracts. The automatic check never parks a contract; only the
/// dialogs do.
class ContractSection {
public:
  /// `unprepared`: jobs whose position could not be copied to the header; they fail.
  ContractSection(RunContext& run, const UnpreparedContracts& unprepared)
      : marks_(run.marks), unprepared_(unprepared), processor_(run) {}

  void run(SectionRunner& runner);

private:
  JobResult processJob(JobRow& job);

  /// Writes the job or marks it as failed; returns the reasons.
  Findings refusalOf(JobRow& job);

  JobMarks& marks_;
  const UnpreparedContracts& unprepared_;
  ContractProcessor processor_;
};

} // namespace qx
