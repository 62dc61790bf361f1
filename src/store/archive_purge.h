// Removes done jobs as the settings ask.
#pragma once

#include "settings/settings.h"
#include "store/job_deletion.h"
#include "store/work_group.h"

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
/// customer are not among them, on purpose. Failures are treated as `JobDeletion` treats them, but a job that
/// takes its unit of work along stays and is told to the diagnostics.
class ArchivePurge {
public:
  using Progress = std::function<void(std::string_view text)>;
  using Stopped = std::function<bool()>;

  ArchivePurge(Environment& environment, JobDeletion& deletion, WorkGroup& group)
      : environment_(environment), deletion_(deletion), group_(group) {}

  /// Gives each active pass's text once, before its deletions. False when it was stopped before its end.
  bool run(const PurgeOptions& options, const Progress& progress, const Stopped& stopped);

private:
  bool removeAll(const std::vector<std::string>& jobIds, const Stopped& stopped);

  Environment& environment_;
  JobDeletion& deletion_;
  WorkGroup& group_;
};

} // namespace qx
