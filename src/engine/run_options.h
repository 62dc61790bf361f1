// The settings that a processing run reads once at its start.
#pragma once

#include "settings/settings.h"

namespace qx {

/// Options of the run, those of orders aside.
struct RunOptions {
  bool customerSpecific = false; ///< the installation's own checks and fees
  bool automatic = false;        ///< check the jobs and park those with findings
  bool createGroups = false;     ///< create unknown customer groups, and so on
  bool createReps = false;
  bool createPayments = false;
  bool createBanks = false;
  bool compareAddresses = false; ///< warn of addresses that differ from the customer's

  static RunOptions read(const Settings& settings);
};

} // namespace qx
