// Creates the database.
#pragma once

#include "cli/command.h"

namespace qx::cli {

/// `init [--demo]`: a second call changes nothing.
class InitCommand final : public Command {
public:
  bool demo = false;

  ExitCode run(Installation& installation, const Output& output) override;
};

} // namespace qx::cli
