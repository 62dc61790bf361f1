// Stages jobs from a file.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `stage FILE|- [--again]`: all jobs of the file or none.
class StageCommand final : public DatabaseCommand {
public:
  std::string file;
  bool again = false; ///< stage done jobs again

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
