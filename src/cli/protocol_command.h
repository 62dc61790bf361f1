// A day's protocol.
#pragma once

#include "cli/command.h"

namespace qx::cli {

/// `protocol`: the lines of the session date's protocols.
class ProtocolCommand final : public DatabaseCommand {
protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
