#include "engine/order_options.h"

#include "rules/german_text.h"

namespace qx {

OrderOptions OrderOptions::read(const Settings& settings, bool customerSpecific) {
  const auto isOn = [&](std::string_view key) {
    return checkState(*findOptionKey(optionSection, key), settings.getShared(optionSection, key, "0"))
        .value_or(false);
  };
  OrderOptions options;
  options.customerSpecific = customerSpecific;
  options.checkCreditLimit = isOn("KreditlimitAuftrag");
  options.costAssignment = isOn("KostenzuordnungAuftrag");
  options.createCostAssignment = settings.isOn("KostAutomatischAnlegen");
  options.warnOfStock = settings.isOn("WarnungLagerbestand");
  options.circlePerOrder = settings.isOn("Buchungskreise", "OnNewAB");
  if (!customerSpecific) return options;
  const auto own = [&](std::string_view key) { return settings.get(runApplicationName, optionSection, key); };
  // Neither on nor off: the line keeps its own flag.
  const auto flag = [&](std::string_view key) {
    return checkState(*findOptionKey(optionSection, key), own(key));
  };
  options.ZAVSRG = own("ZAVSRG");
  options.VAKunde = own("VAKunde");
  options.ZAKunde = own("ZAKunde");
  options.abGewicht = parseTypedNumber(own("abGewicht")).value_or(0);
  options.VSabGewicht = own("VSabGewicht");
  options.FrachtTransport = own("FrachtTransport");
  options.FrachtGebuehr = own("FrachtGebuehr");
  options.MinGebuehr = parseTypedNumber(own("MinGebuehr")).value_or(0);
  options.lineReadyForDelivery = flag("SWAuftLieferbereit");
  options.lineReadyForInvoice = flag("SWAuftFakturierbereit");
  return options;
}

} // namespace qx
