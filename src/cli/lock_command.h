// Shows and releases the single-user lock.
#pragma once

#include "cli/command.h"

namespace qx::cli {

/// `lock show`.
class LockShowCommand final : public DatabaseCommand {
protected:
  ExitCode work(const CommandContext& context) override;
};

/// `lock release`, whoever holds it.
class LockReleaseCommand final : public DatabaseCommand {
protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
