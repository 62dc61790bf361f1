// Checks staged jobs without writing anything.
#pragma once

#include "cli/command.h"

#include <string>
#include <vector>

namespace qx::cli {

/// `check [JOBID...]`: the jobs of these keys, or all waiting ones.
class CheckCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
