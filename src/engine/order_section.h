// The order section of a run.
#pragma once

#include "engine/order_check.h"
#include "engine/order_writer.h"
#include "engine/position_facts.h"
#include "engine/section_runner.h"

#include <optional>

namespace qx {

/// Checks each waiting order, parks it or writes it.
class OrderSection {
public:
  /// `prices` must outlive it.
  OrderSection(RunContext& run, PriceComponent& prices);

  /// Reports malformed fee entries in a message box at the end.
  void run(SectionRunner& runner);

private:
  void foresee(const JobRow& job);
  JobResult processJob(JobRow& job);
  void announceMalformedFees() const;
  bool leftOut(const JobRow& job) const;
  /// The outcome of the check.
  struct Verdict {
    Findings findings;                ///< recorded with the job
    std::optional<JobResult> refused; ///< set when the job must not be written
  };
  Verdict evaluate(JobRow& job, OrderFacts& facts);
  JobResult fail(JobRow& job, std::string_view reason, Findings findings = {});
  static JobResult written(const JobRow& job, WrittenOrder order);
  ProtocolLine::Articles stagedArticles(const JobRow& job) const;
  JobResult refusedResult(const JobRow& job, std::string_view status, Findings findings) const;

  RunContext& run_;
  PriceComponent& prices_;
  OrderCheck check_;
  SilentDiagnostics silence_;
  Environment quiet_; ///< reports nothing
  OrderCheck foreseeingCheck_;
  OrderWriter writer_;
};

} // namespace qx
