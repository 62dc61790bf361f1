#include "engine/order_options.h"

#include "rules/german_text.h"

namespace qx {
namespace {

std::optional<bool> readyFlag(const std::string& text) {
  const auto number = settingToInt16(text);
  if (!number) return std::nullopt;
  return *number != 0;
}

} // namespace

OrderOptions OrderOptions::read(const Settings& settings, bool customerSpecific) {
  const auto shared16 = [&](std::string_view key) {
    return settingToInt16(settings.getShared(optionSection, key, "0")).value_or(0);
  };
  OrderOptions options;
  options.customerSpecific = customerSpecific;
  options.checkCreditLimit = shared16("KreditlimitAuftrag") >= 1;
  options.costAssignment = shared16("KostenzuordnungAuftrag") >= 1;
  options.createCostAssignment = settings.isOn("KostAutomatischAnlegen");
  options.warnOfStock = settings.isOn("WarnungLagerbestand");
  options.circlePerOrder = settings.get(runApplicationName, "Buchungskreise", "OnNewAB") == "1";
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
  options.lineReadyForDelivery = readyFlag(own("SWAuftLieferbereit"));
  options.lineReadyForInvoice = readyFlag(own("SWAuftFakturierbereit"));
  return options;
}

} // namespace qx
