// Opens the window.
#pragma once

#include "cli/command.h"
#include "program/view_arguments.h"

namespace qx::cli {

/// `view [FILE]`: replaces this process with the window program.
class ViewCommand final : public Command {
public:
  ViewArguments arguments;

  void prepare() override { requireJobFile(arguments.file); }
  ExitCode run(Installation& installation, const Output& output) override;
};

} // namespace qx::cli
