#include "engine/order_options.h"

#include "rules/german_text.h"

namespace qx {

OrderOptions OrderOptions::read(const Settings& settings, bool customerSpecific) {
  OrderOptions options;
  options.customerSpecific = customerSpecific;
  options.checkCreditLimit = settings.isOn("KreditlimitAuftrag");
  options.costAssignment = settings.isOn("KostenzuordnungAuftrag");
  options.createCostAssignment = settings.isOn("KostAutomatischAnlegen");
  options.warnOfStock = settings.isOn("WarnungLagerbestand");
  options.circlePerOrder = settings.isOn("Buchungskreise", "OnNewAB");
  if (!customerSpecific) return options;
  const auto own = [&](std::string_view key) { return settings.get(runApplicationName, optionSection, key); };
  options.ZAVSRG = own("ZAVSRG");
  options.VAKunde = own("VAKunde");
  options.ZAKunde = own("ZAKunde");
  options.abGewicht = parseTypedNumber(own("abGewicht")).value_or(0);
  options.VSabGewicht = own("VSabGewicht");
  options.FrachtTransport = own("FrachtTransport");
  options.FrachtGebuehr = own("FrachtGebuehr");
  options.MinGebuehr = parseTypedNumber(own("MinGebuehr")).value_or(0);
  options.lineReadyForDelivery = settings.state("SWAuftLieferbereit");
  options.lineReadyForInvoice = settings.state("SWAuftFakturierbereit");
  return options;
}

} // namespace qx
