// The order section of a run.
#pragma once

#include "engine/order_check.h"
#include "engine/order_options.h"
#include "engine/order_writer.h"
#include "engine/position_facts.h"
#include "engine/section_runner.h"

#include <memory>
#include <string>

namespace qx {

/// Checks each waiting order, parks it or writes it.
class OrderSection {
public:
  struct Parts {
    Environment& environment;
    JobMarks& marks;
    WorkGroup& group;
    const OrderOptions& options;
    const OrderStamp& stamp;
    std::string& cashOnDelivery; ///< takes the numbers of the heavy orders that are paid to the carrier
    bool automatic = false;
    bool unevaluated = false;
    qxProcessState selection = qxProcessState::ProcessAll;
  };

  /// `component`: the run's pricing component, initialised; may be null.
  OrderSection(const Parts& parts, std::unique_ptr<Preisfindung> component);

  /// Shows the malformed fee entries at its end.
  void run(SectionRunner& runner);

private:
  JobResult processJob(JobRow& job);
  void announceMalformedFees() const;
  bool leftOut(const JobRow& job) const;
  /// False when the job must not be written; else `findings` are those that it is written with.
  bool evaluate(JobRow& job, OrderFacts& facts, Findings& findings, JobResult& refused);
  JobResult fail(JobRow& job, std::string_view reason, Findings findings = {});
  static JobResult written(const JobRow& job, WrittenOrder order);
  ProtocolLine::Articles stagedArticles(const JobRow& job) const;
  JobResult refusedResult(const JobRow& job, std::string_view status, Findings findings) const;

  Parts parts_;
  PriceComponent prices_;
  OrderCheck check_;
  OrderWriter writer_;
};

} // namespace qx
