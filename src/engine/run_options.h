// The settings that a processing run reads once at its start.
#pragma once

#include "settings/settings.h"

#include <optional>
#include <string>

namespace qx {

/// The options of a run, except those for orders.
struct RunOptions {
  bool customerSpecific = false; ///< customer-specific checks and fees are on
  bool automatic = false;        ///< check the jobs and park those with findings
  bool createGroups = false;     ///< create unknown customer groups; likewise below
  bool createReps = false;
  bool createPayments = false;
  bool createBanks = false;
  bool compareAddresses = false; ///< warn of addresses that differ from the customer's

  static RunOptions read(const Settings& settings);
};

/// Texts are codes or article numbers as stored; "" when absent or, for customer-specific settings, when that
/// mode is off.
struct OrderOptions {
  bool customerSpecific = false;
  bool checkCreditLimit = false;
  bool costAssignment = false;
  bool createCosts = false; ///< create missing cost assignments
  bool warnOfStock = false;
  double priceDeviation = 0;   ///< percent from which a price that differs is a warning; 0 for never
  bool circlePerOrder = false; ///< determine the booking circle for each order
  std::string ZAVSRG, VAKunde, ZAKunde;
  double abGewicht = 0; ///< kg; 0 for no limit
  std::string VSabGewicht;
  std::string FrachtTransport, FrachtGebuehr;
  double MinGebuehr = 0;
  std::optional<bool> lineReadyForDelivery; ///< null leaves the staged flag
  std::optional<bool> lineReadyForInvoice;
  /// The day on which the tax rates change, "" for none; null when it could not be read. Set by the run.
  std::optional<std::string> taxChangeDay = std::nullopt;

  static OrderOptions read(const Settings& settings, bool customerSpecific);
};

} // namespace qx
