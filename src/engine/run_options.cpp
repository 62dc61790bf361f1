#include "engine/run_options.h"

namespace qx {

RunOptions RunOptions::read(const Settings& settings) {
  return {settings[option::customerSpecific], settings[option::automatic],
          settings[option::createGroups],     settings[option::createReps],
          settings[option::createPayments],   settings[option::createBanks],
          settings[option::compareAddresses]};
}

} // namespace qx
