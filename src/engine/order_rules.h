// The rules for staged orders: each is one function, shared by check, run and dialog.
#pragma once

#include "engine/credit_limit.h"
#include "engine/findings.h"
#include "engine/job_fields.h"
#include "engine/position_facts.h"
#include "engine/run_options.h"
#include "platform/environment.h"
#include "rules/cost_assignment.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"

#include <optional>
#include <span>

namespace qx {

/// The master data and options that the rules refer to. Both arguments must outlive it.
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

/// A check of the header. No finding means that the job keeps the rules or that their option is off.
struct HeaderRule {
  std::span<const Rule> rules; ///< those that it can report as broken
  std::optional<Finding> (*broken)(const OrderMaster& master, const JobFields& job);
  bool withControl = false; ///< a dialog checks it together with its control, the others after every change
};

/// The same for a position; the caller adds the position to the finding.
struct PositionRule {
  std::span<const Rule> rules;
  std::optional<Finding> (*broken)(const OrderMaster& master, const JobFields& position,
                                   PositionFacts& facts);
};

/// Whether the staged price, for the same quantity, differs from the found one by at least the percentage
/// that the options name. Never without such a percentage, a staged or a found price.
bool exceedsDeviation(const OrderOptions& options, const JobFields& position, PositionFacts& facts);
/// The hint that the ERP's price replaces the staged one; null when the position brings none, or the same.
std::optional<Finding> replacedPrice(const JobFields& position, PositionFacts& facts);

/// In the order in which a run checks them.
std::span<const HeaderRule> headerRules();
/// The check whose first rule is this one.
const HeaderRule& headerRule(Rule rule);
std::span<const PositionRule> positionRules();

} // namespace qx
