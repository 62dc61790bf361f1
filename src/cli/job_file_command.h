// Exchanges jobs with other installations through job files.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `import FILE [--version1]`: reads every record that is not defective.
class ImportCommand final : public DatabaseCommand {
public:
  std::string file;
  bool version1 = false;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `export FILE [--version1]`: every job and position.
class ExportCommand final : public DatabaseCommand {
public:
  std::string file;
  bool version1 = false;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `scramble FILE OUT`: from the plain form to the scrambled one of the installation's code tables.
class ScrambleCommand final : public DatabaseCommand {
public:
  std::string file;
  std::string target;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `unscramble FILE OUT`: the reverse.
class UnscrambleCommand final : public DatabaseCommand {
public:
  std::string file;
  std::string target;

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
