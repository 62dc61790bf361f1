// The rules of staged orders: each is one function, which the check, the run and the dialog share.
#pragma once

#include "engine/credit_limit.h"
#include "engine/findings.h"
#include "engine/job_fields.h"
#include "engine/order_options.h"
#include "engine/position_facts.h"
#include "platform/environment.h"
#include "rules/cost_assignment.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"

#include <optional>
#include <span>

namespace qx {

/// The master data and options against which the rules are held. Both must outlive it.
struct OrderMaster {
  OrderMaster(Environment& erp, const OrderOptions& orderOptions)
      : environment(erp), options(orderOptions), masterData(erp), addresses(erp), costs(erp), credit(erp) {}

  Environment& environment;
  const OrderOptions& options;
  MasterData masterData;
  CustomerAddresses addresses;
  CostAssignment costs;
  CreditLimit credit;
};

/// A check of the header. Without a finding the job keeps the rules; one whose option is off finds nothing.
struct HeaderRule {
  std::span<const Rule> rules; ///< those that it can find broken
  std::optional<Finding> (*broken)(const OrderMaster& master, const JobFields& job);
  bool atControl = false; ///< a dialog looks at it with the control, against the list or lines shown there
};

/// The same for a position; the finding does not name the position yet.
struct PositionRule {
  std::span<const Rule> rules;
  std::optional<Finding> (*broken)(const OrderMaster& master, const JobFields& position,
                                   PositionFacts& facts);
};

/// Each in the order in which a run looks.
std::span<const HeaderRule> headerRules();
std::span<const PositionRule> positionRules();

} // namespace qx
