#include "engine/run_options.h"

namespace qx {

RunOptions RunOptions::read(const Settings& settings) {
  return {settings[option::customerSpecific], settings[option::automatic],
          settings[option::createGroups],     settings[option::createReps],
          settings[option::createPayments],   settings[option::createBanks],
          settings[option::compareAddresses]};
}

OrderOptions OrderOptions::read(const Settings& settings, bool customerSpecific) {
  OrderOptions options;
  options.customerSpecific = customerSpecific;
  options.checkCreditLimit = settings[option::checkCreditLimit];
  options.costAssignment = settings[option::costAssignment];
  options.createCosts = settings[option::createCosts];
  options.warnOfStock = settings[option::warnOfStock];
  options.priceDeviation = settings[option::priceDeviation];
  options.circlePerOrder = settings[option::circlePerOrder];
  if (!customerSpecific) return options;
  options.ZAVSRG = settings[option::ZAVSRG];
  options.VAKunde = settings[option::VAKunde];
  options.ZAKunde = settings[option::ZAKunde];
  options.abGewicht = settings[option::abGewicht];
  options.VSabGewicht = settings[option::VSabGewicht];
  options.FrachtTransport = settings[option::FrachtTransport];
  options.FrachtGebuehr = settings[option::FrachtGebuehr];
  options.MinGebuehr = settings[option::MinGebuehr];
  options.lineReadyForDelivery = settings[option::linesReadyForDelivery];
  options.lineReadyForInvoice = settings[option::linesReadyForInvoice];
  return options;
}

} // namespace qx
