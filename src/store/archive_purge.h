// Removes done jobs as configured.
#pragma once

#include "settings/settings.h"
#include "store/job_deletion.h"

#include <functional>
#include <string_view>

namespace qx {

/// Which done jobs are removed; each option only when its setting reads exactly "1".
struct PurgeOptions {
  bool customers = false; ///< `KundeDelete`
  bool contracts = false; ///< `VTDelete`
  bool orders = false;    ///< `AuftragDelete`

  static PurgeOptions read(const Settings& settings);
};

/// Deletes done customers, then done customer contracts, then done orders. Done contract jobs without a
/// customer are not among them, on purpose. Shows the text of each active pass once, before its deletions.
/// False when it was stopped early.
bool purgeArchives(JobDeletion& deletion, const PurgeOptions& options,
                   const std::function<void(std::string_view text)>& progress, const JobDeletion::GoOn& goOn);

} // namespace qx
