// Turns the program's arguments into a command.
#pragma once

#include "cli/command.h"
#include "program/common_options.h"

#include <memory>
#include <string>
#include <string_view>

namespace qx::cli {

/// The requested command. Without one, `text` is printed: help or the version.
struct Invocation {
  ProgramOptions options;
  std::shared_ptr<Command> command;
  std::string text;
  bool jsonLines = false;
  std::string color; ///< "auto", "always" or "never"
};

/// Raises `ProgramError` for invalid arguments.
Invocation parseArguments(int count, const char* const* arguments, std::string_view version);

/// Whether errors are to be reported as JSON, even when the arguments cannot be parsed.
bool asksForJson(int count, const char* const* arguments);

} // namespace qx::cli
