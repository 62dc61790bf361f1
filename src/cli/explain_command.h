// Explains what a finding means and what to do about it.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `explain CODE|TEXT|JOBID`: the rules of a code or of a text of the run or the dialogs, which needs no
/// database; else the findings of a job with their values, and the rules of its reasons.
class ExplainCommand final : public Command {
public:
  std::string subject;

  ExitCode run(Installation& installation, const Output& output) override;

private:
  ExitCode explainJob(Installation& installation, const Output& output) const;
};

} // namespace qx::cli
