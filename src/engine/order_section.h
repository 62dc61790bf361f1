// The order section of a run.
#pragma once

#include "engine/order_check.h"
#include "engine/order_writer.h"
#include "engine/position_facts.h"
#include "engine/section_runner.h"

#include <memory>
#include <optional>

namespace qx {

/// Checks each waiting order, parks it or writes it.
class OrderSection {
public:
  /// `component`: the run's pricing component, initialised; may be null.
  OrderSection(RunContext& run, std::unique_ptr<Preisfindung> component);

  /// Shows the malformed fee entries at its end.
  void run(SectionRunner& runner);

private:
  JobResult processJob(JobRow& job);
  void announceMalformedFees() const;
  bool leftOut(const JobRow& job) const;
  /// What the check says of a job.
  struct Verdict {
    Findings findings;                ///< what it is written with
    std::optional<JobResult> refused; ///< set when it must not be written
  };
  Verdict evaluate(JobRow& job, OrderFacts& facts);
  JobResult fail(JobRow& job, std::string_view reason, Findings findings = {});
  static JobResult written(const JobRow& job, WrittenOrder order);
  ProtocolLine::Articles stagedArticles(const JobRow& job) const;
  JobResult refusedResult(const JobRow& job, std::string_view status, Findings findings) const;

  RunContext& run_;
  PriceComponent prices_;
  OrderCheck check_;
  OrderWriter writer_;
};

} // namespace qx
