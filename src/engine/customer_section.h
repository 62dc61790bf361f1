// The customer section of a run.
#pragma once

#include "engine/customer_check.h"
#include "engine/customer_processor.h"
#include "engine/section_runner.h"

namespace qx {

/// Checks each waiting customer job in automatic mode, parks it or writes it.
class CustomerSection {
public:
  explicit CustomerSection(RunContext& run)
      : run_(run), check_(run.environment, run.options.compareAddresses), processor_(run) {}

  void run(SectionRunner& runner);

private:
  void foresee(const JobRow& job);
  bool isChecked(const JobRow& job) const;
  JobResult processJob(JobRow& job);
  static JobResult failed(const JobRow& job, Findings findings = {});
  static JobResult indexed(const JobRow& job, JobResult result);
  Findings park(JobRow& job);

  RunContext& run_;
  CustomerCheck check_;
  CustomerProcessor processor_;
};

} // namespace qx
