// Checks staged jobs and writes nothing.
#pragma once

#include "cli/command.h"

#include <string>
#include <vector>

namespace qx::cli {

/// `check [JOBID...]`: the jobs of these keys, or all that wait.
class CheckCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
