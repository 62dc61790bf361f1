// The three standard streams of a program.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

namespace qx {

inline constexpr int standardInput = 0;
inline constexpr int standardOutput = 1;
inline constexpr int standardError = 2;

/// Whether standard error, or standard output, is a terminal that understands escape sequences.
bool isErrorTerminal();
bool isOutputTerminal();

/// The present width of the terminal at one of the streams; null when that is none or does not say.
std::optional<std::size_t> terminalColumns(int stream);

/// Whether the system's log takes in the stream and reads a priority in front of each line.
bool isSystemLog(int stream);

/// Whether the file is standard output's pipe or terminal under another name.
bool isStandardOutput(const std::filesystem::path& file);

/// Needs no memory.
void writeToStandardError(std::string_view text) noexcept;

} // namespace qx
