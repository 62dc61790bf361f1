// The contract section of a run.
#pragma once

#include "engine/contract_processor.h"
#include "engine/section_runner.h"

namespace qx {

/// Writes the waiting contracts and customer contracts. The automatic check never parks a contract; only the
/// dialogs do.
class ContractSection {
public:
  ContractSection(Environment& environment, JobMarks& marks, EventSource& events)
      : marks_(marks), processor_(environment, marks, events) {}

  void run(SectionRunner& runner);

private:
  JobResult processJob(JobRow& job);

  JobMarks& marks_;
  ContractProcessor processor_;
};

} // namespace qx
