// The user who runs the program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace qx {

/// A variable of the environment; null when it is not set.
std::optional<std::string> environmentVariable(const char* name);

/// The name by which the user has logged in; "" when it is unknown.
std::string loginName();

/// The folder for the program's data of this user; null when there is no home folder.
std::optional<std::filesystem::path> userDataFolder();

} // namespace qx
