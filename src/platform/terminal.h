// The three standard streams of a program.
#pragma once

#include <filesystem>
#include <string_view>

namespace qx {

inline constexpr int standardInput = 0;
inline constexpr int standardOutput = 1;

/// Whether standard error is a terminal that understands escape sequences.
bool isErrorTerminal();

/// Whether the file is standard output's pipe or terminal under another name.
bool isStandardOutput(const std::filesystem::path& file);

/// Needs no memory.
void writeToStandardError(std::string_view text) noexcept;

} // namespace qx
