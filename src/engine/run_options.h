// The settings that a processing run reads once at its start.
#pragma once

#include "settings/settings.h"

#include <string>

namespace qx {

/// Options of the run. Texts are as stored; "" when absent.
struct RunOptions {
  bool automatic = false;        ///< `AutomatischVerarbeiten`
  bool createGroups = false;     ///< `KundenKundengruppe`
  bool createReps = false;       ///< `KundenVertreter`
  bool createPayments = false;   ///< `KundenZahlungsart`
  bool createBanks = false;      ///< `KundenBankleitzahl`
  bool compareAddresses = false; ///< `KundeAdressProof`
  bool customerSpecific = false; ///< the installation's own checks and fees
  std::string ZAVSRG, ZAVS, VAZA, abGewicht, VSabGewicht;

  static RunOptions read(const Settings& settings);
};

} // namespace qx
