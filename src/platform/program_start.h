// Starts another program.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace qx {

/// The file of the running program. Raises `std::system_error`.
std::filesystem::path ownProgram();

/// Lets another program continue in place of this one, with its streams. Where a process can be replaced it
/// does not return; elsewhere it returns the exit status of the other. The program is named without the
/// system's ending of programs. Raises `std::system_error` when it cannot be started.
int continueAs(const std::filesystem::path& program, const std::vector<std::string>& arguments);

} // namespace qx
