// Copies the database to a file.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `backup FILE [--replace]`: the whole database as it is at one moment.
class BackupCommand final : public DatabaseCommand {
public:
  std::string file;
  bool replace = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
