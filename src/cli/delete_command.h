// Deletes jobs: by key, or all done ones.
#pragma once

#include "cli/command.h"

#include <optional>
#include <string>
#include <vector>

namespace qx::cli {

/// `delete JOBID... [--with-contracts]`; a job that the database refuses to delete stays and is named.
class DeleteCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;
  bool withContracts = false; ///< of a customer job also the customer's contract jobs

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `purge [--before dd.mm.yyyy]`: all done jobs, or those received before a day.
class PurgeCommand final : public DatabaseCommand {
public:
  std::optional<std::string> before;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  std::optional<Date> day_;
};

} // namespace qx::cli
