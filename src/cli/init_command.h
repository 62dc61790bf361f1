// Creates the database.
#pragma once

#include "cli/command.h"

namespace qx::cli {

/// `init [--demo] [--shared]`: a second call changes nothing.
class InitCommand final : public Command {
public:
  bool demo = false;
  bool shared = false; ///< for the whole group of its owner

  ExitCode run(Installation& installation, const Output& output) override;
};

} // namespace qx::cli
