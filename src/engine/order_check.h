// The check of an order job.
#pragma once

#include "engine/findings.h"
#include "engine/order_rules.h"
#include "engine/position_facts.h"
#include "engine/run_options.h"
#include "platform/environment.h"

#include <string_view>

namespace qx {

/// Checks a staged order, header and positions, against the master data. Writes nothing.
class OrderCheck {
public:
  OrderCheck(Environment& environment, const OrderOptions& options) : master_(environment, options) {}

  /// The findings of the job, header first. Clean for a job that is neither waiting nor parked. `facts`
  /// belong to this job; what has been read into them can be reused when it is written. `hints`, unless it is
  /// null, gets one for each position whose price the ERP's replaces without that being a finding.
  Findings CheckAuftrag(std::string_view JobID, OrderFacts& facts, Findings* hints = nullptr) const;

private:
  Findings checkPositions(std::string_view jobId, OrderFacts& facts, Findings* hints) const;

  OrderMaster master_;
};

} // namespace qx
