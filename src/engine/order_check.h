// The check of an order job.
#pragma once

#include "engine/findings.h"
#include "engine/order_options.h"
#include "engine/order_rules.h"
#include "engine/position_facts.h"
#include "platform/environment.h"

#include <string_view>

namespace qx {

/// Inspects a staged order, header and positions, against the master data. Each finding is a token. Writes
/// nothing.
class OrderCheck {
public:
  OrderCheck(Environment& environment, const OrderOptions& options) : master_(environment, options) {}

  /// The findings of the job, header first. Clean for a job that is neither waiting nor parked. `facts` are
  /// those of this job; what was read of them is left for its writing. `stagedText`: whether a text that
  /// stands in `Fehlertext` counts as a warning.
  Findings CheckAuftrag(std::string_view JobID, OrderFacts& facts, bool stagedText = true) const;

private:
  Findings checkPositions(std::string_view jobId, OrderFacts& facts) const;

  OrderMaster master_;
};

} // namespace qx
