#include "engine/run_options.h"

namespace qx {

RunOptions RunOptions::read(const Settings& settings) {
  const auto runOption = [&](std::string_view key) {
    return settings.get(runApplicationName, optionSection, key);
  };
  RunOptions options;
  options.ZAVSRG = runOption("ZAVSRG");
  options.ZAVS = runOption("ZAVS");
  options.VAZA = runOption("VAZA");
  options.abGewicht = runOption("abGewicht");
  options.VSabGewicht = runOption("VSabGewicht");
  options.customerSpecific = settings.customerSpecific();
  options.automatic = settings.isOn("AutomatischVerarbeiten");
  options.createGroups = settings.isOn("KundenKundengruppe");
  options.createReps = settings.isOn("KundenVertreter");
  options.createPayments = settings.isOn("KundenZahlungsart");
  options.createBanks = settings.isOn("KundenBankleitzahl");
  options.compareAddresses = settings.isOn("KundeAdressProof");
  return options;
}

} // namespace qx
