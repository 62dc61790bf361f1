// Releases jobs with warnings or errors for the next run.
#pragma once

#include "cli/command.h"
#include "cli/job_query.h"

#include <string>
#include <vector>

namespace qx::cli {

/// `release JOBID...` or `release --all-warnings`.
class ReleaseCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;
  bool allWarnings = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  /// The keys of the jobs that were released.
  std::vector<std::string> release(const CommandContext& context) const;
};

} // namespace qx::cli
