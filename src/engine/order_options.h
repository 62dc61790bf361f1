// The settings of a run that concern orders, read once.
#pragma once

#include "settings/settings.h"

#include <optional>
#include <string>

namespace qx {

/// Texts are codes or article numbers as stored; "" when absent or, for the installation's own settings, when
/// its mode is off.
struct OrderOptions {
  bool customerSpecific = false;
  bool checkCreditLimit = false;     ///< `KreditlimitAuftrag` is 1 or more
  bool costAssignment = false;       ///< `KostenzuordnungAuftrag` is 1 or more
  bool createCostAssignment = false; ///< `KostAutomatischAnlegen`
  bool warnOfStock = false;          ///< `WarnungLagerbestand`
  bool circlePerOrder = false; ///< `Buchungskreise`/`OnNewAB` is "1": ask for the booking circle each time
  std::string ZAVSRG, VAKunde, ZAKunde;
  double abGewicht = 0; ///< kg; 0 for no limit
  std::string VSabGewicht;
  std::string FrachtTransport, FrachtGebuehr;
  double MinGebuehr = 0;
  std::optional<bool> lineReadyForDelivery; ///< `SWAuftLieferbereit`; null leaves the staged flag
  std::optional<bool> lineReadyForInvoice;  ///< `SWAuftFakturierbereit`
  /// The day of the change of tax rates, "" for none; null when it could not be read. Set by the run.
  std::optional<std::string> taxChangeDay = std::nullopt;

  /// A number that nobody can read, or in two ways, is not used and told to the diagnostics.
  static OrderOptions read(const Settings& settings, bool customerSpecific, Diagnostics& diagnostics);
};

} // namespace qx
