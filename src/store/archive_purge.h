// Removes done jobs as the settings ask.
#pragma once

#include "store/job_deletion.h"

#include <functional>
#include <string_view>

namespace qx {

/// Deletes done customers, then done customer contracts, then done orders, each only when its setting reads
/// exactly "1". Done contract jobs without a customer are not among them, on purpose. Failures are treated as
/// `JobDeletion` treats them.
class ArchivePurge {
public:
  using Progress = std::function<void(std::string_view text)>;

  ArchivePurge(Environment& environment, JobDeletion& deletion)
      : environment_(environment), deletion_(deletion) {}

  /// Gives each active pass's text once, before its deletions.
  void run(const Progress& progress, const AfterJob& afterJob = {});

private:
  Environment& environment_;
  JobDeletion& deletion_;
};

} // namespace qx
