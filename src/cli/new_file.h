// A file that a command leaves behind.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>

namespace qx::cli {

/// Writes a file that must not exist yet, for its owner alone. It has its name only when it is complete and
/// lasts. Raises `ProgramError`.
void writeNewFile(const std::string& name, const std::function<void(std::ostream& file)>& write);
void writeNewFile(const std::string& name, std::string_view text);

} // namespace qx::cli
