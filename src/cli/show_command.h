// Shows one staged job.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `show JOBID`: header, positions and findings.
class ShowCommand final : public DatabaseCommand {
public:
  std::string jobId;

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
