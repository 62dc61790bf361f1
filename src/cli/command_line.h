// Turns the program's arguments into a command.
#pragma once

#include "cli/command.h"
#include "program/program_options.h"

#include <memory>
#include <string>
#include <string_view>

namespace qx::cli {

/// What the arguments ask for. Without a command `text` is to be printed: help or the version.
struct Invocation {
  ProgramOptions options;
  std::unique_ptr<Command> command;
  std::string text;
};

/// Raises `ProgramError` for arguments that make no sense.
Invocation parseArguments(int count, const char* const* arguments, std::string_view version);

/// Whether errors are to be told as JSON, even when the arguments cannot be parsed.
bool asksForJson(int count, const char* const* arguments);

} // namespace qx::cli
