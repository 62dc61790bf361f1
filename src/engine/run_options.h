// The settings that a processing run reads once at its start.
#pragma once

#include "settings/settings.h"

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

} // namespace qx
