// A processing run.
#pragma once

#include "cli/command.h"

#include <chrono>
#include <string>

namespace qx::cli {

/// `process [--select S] [--unevaluated] [--wait[=TIME]]`, under the single-user lock.
class ProcessCommand final : public DatabaseCommand {
public:
  std::string select = "alle";
  bool unevaluated = false; ///< skip the automatic check
  std::string wait = "0";   ///< for the lock: a number with s, min or h behind it, or `forever`

  static constexpr const char* forever = "forever";

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  ExitCode runLocked(const CommandContext& context) const;

  qxProcessState selection_ = qxProcessState::ProcessAll;
  std::chrono::seconds lockWait_{0};
};

} // namespace qx::cli
