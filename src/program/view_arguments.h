// The arguments of the window program.
#pragma once

#include "program/common_options.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The name of the window program, in the folder of the program.
inline constexpr std::string_view viewProgram = "qximportjob-view";

struct ViewArguments {
  ProgramOptions options;
  std::string file; ///< a job file to import once the window is open; may be empty
  std::string text; ///< printed instead of opening the window: help or the version
};

/// Raises `ProgramError` for invalid arguments and a missing file.
ViewArguments parseViewArguments(int count, const char* const* arguments, std::string_view version);

/// The arguments for `parseViewArguments`, without the program's name.
std::vector<std::string> viewWords(const ViewArguments& arguments);

/// Raises `ProgramError` when the file is missing; an empty name means no file.
void requireJobFile(const std::string& file);

} // namespace qx
