// The form in which Linux describes a process.
#pragma once

#include "platform/processes.h"

#include <optional>
#include <string_view>

namespace qx {

/// Reads a line of the form of /proc/<number>/stat. Null for another form and for a zombie process.
std::optional<ProcessStart> parseProcessStat(std::string_view line);

} // namespace qx
