// Brings an older database to the version of the program.
#pragma once

#include "cli/command.h"

namespace qx::cli {

/// `upgrade`: makes a backup first; a second call changes nothing.
class UpgradeCommand final : public Command {
public:
  ExitCode run(Installation& installation, const Output& output) override;
};

} // namespace qx::cli
