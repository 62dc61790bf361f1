// Jobs that are kept in a file before they are deleted.
#pragma once

#include "platform/environment.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The type of such a job in its file.
inline constexpr std::string_view keptType = "ImportKopf";

/// Writes the jobs of these keys with their positions, one a line, with every column and in their states, so
/// that staging the lines takes them back. Keys without a job are left out. Database errors reach the caller.
void writeKeptJobs(Connection& connection, const std::vector<std::string>& jobIds,
                   const std::function<void(const std::string& line)>& write);

/// The same into a file, which replaces one of this name when all is written. Raises `TargetRefused`,
/// `NoTarget` and `std::system_error`.
void keepJobs(Environment& environment, const std::vector<std::string>& jobIds, std::string_view file);

} // namespace qx
