// The arguments of the window program.
#pragma once

#include "program/program_options.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The name of the window program; it lies beside the program.
inline constexpr std::string_view viewProgram = "qximportjob-view";

struct ViewArguments {
  ProgramOptions options;
  std::string file; ///< a job file to be read in once the window is open; may be empty
  std::string text; ///< to be printed instead of opening the window: help or the version
};

/// Raises `ProgramError` for arguments that make no sense and for a file that is not there.
ViewArguments parseViewArguments(int count, const char* const* arguments, std::string_view version);

/// The words that `parseViewArguments` reads, without the program's name.
std::vector<std::string> viewWords(const ViewArguments& arguments);

/// Raises `ProgramError` when the file is not there; an empty name is none.
void requireJobFile(const std::string& file);

} // namespace qx
