#include "engine/order_options.h"

#include "model/german_text.h"
#include "model/text.h"

namespace qx {

OrderOptions OrderOptions::read(const Settings& settings, bool customerSpecific, Diagnostics& diagnostics) {
  OrderOptions options;
  options.customerSpecific = customerSpecific;
  options.checkCreditLimit = settings.isOn("KreditlimitAuftrag");
  options.costAssignment = settings.isOn("KostenzuordnungAuftrag");
  options.createCostAssignment = settings.isOn("KostAutomatischAnlegen");
  options.warnOfStock = settings.isOn("WarnungLagerbestand");
  options.circlePerOrder = settings.isOn("Buchungskreise", "OnNewAB");
  if (!customerSpecific) return options;
  const auto own = [&](std::string_view key) { return settings.get(runApplicationName, optionSection, key); };
  const auto amount = [&](std::string_view key) {
    const std::string text = own(key);
    if (trimBlanks(text).empty()) return 0.0;
    const std::string doubt = doubtAbout(text);
    if (doubt.empty()) return *parseTypedNumber(text);
    diagnostics.report(
        {"setting ImportJob2/" + std::string(key), "'" + text + "' " + doubt + " and is not used", ""});
    return 0.0;
  };
  options.ZAVSRG = own("ZAVSRG");
  options.VAKunde = own("VAKunde");
  options.ZAKunde = own("ZAKunde");
  options.abGewicht = amount("abGewicht");
  options.VSabGewicht = own("VSabGewicht");
  options.FrachtTransport = own("FrachtTransport");
  options.FrachtGebuehr = own("FrachtGebuehr");
  options.MinGebuehr = amount("MinGebuehr");
  options.lineReadyForDelivery = settings.state("SWAuftLieferbereit");
  options.lineReadyForInvoice = settings.state("SWAuftFakturierbereit");
  return options;
}

} // namespace qx
