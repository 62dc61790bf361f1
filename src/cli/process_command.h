// A processing run.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `process [--select S] [--unevaluated]`, under the single-user lock.
class ProcessCommand final : public DatabaseCommand {
public:
  std::string select = "alle";
  bool unevaluated = false; ///< skip the automatic check

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  ExitCode runLocked(const CommandContext& context) const;

  qxProcessState selection_ = qxProcessState::ProcessAll;
};

} // namespace qx::cli
