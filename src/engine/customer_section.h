// The customer section of a run.
#pragma once

#include "engine/customer_check.h"
#include "engine/customer_processor.h"
#include "engine/section_runner.h"

namespace qx {

/// Checks each waiting customer job in automatic mode, parks it or writes it.
class CustomerSection {
public:
  /// `unevaluated`: the automatic check is left out. The arguments must outlive the section.
  CustomerSection(Environment& environment, const RunOptions& options, JobMarks& marks, EventSource& events,
                  const std::string& homeCurrency, bool unevaluated);

  void run(SectionRunner& runner);

private:
  JobResult processJob(JobRow& job);
  static JobResult failed(const JobRow& job, Findings findings = {});
  static JobResult indexed(const JobRow& job, JobResult result);
  Findings park(JobRow& job);

  const RunOptions& options_;
  JobMarks& marks_;
  bool unevaluated_;
  CustomerCheck check_;
  CustomerProcessor processor_;
};

} // namespace qx
