// Reads and writes options.
#pragma once

#include "cli/command.h"

#include <string>

namespace qx::cli {

/// `settings list`: every option that the program knows.
class SettingsListCommand final : public DatabaseCommand {
protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings get SECTION KEY [--local]`.
class SettingsGetCommand final : public DatabaseCommand {
public:
  std::string section;
  std::string key;
  bool local = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings set SECTION KEY VALUE [--local]`.
class SettingsSetCommand final : public DatabaseCommand {
public:
  std::string section;
  std::string key;
  std::string value;
  bool local = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

} // namespace qx::cli
