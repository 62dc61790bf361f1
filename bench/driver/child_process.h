// Runs a program and tells its time and memory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace qx::bench {

using Command = std::vector<std::string>;

struct Measurement {
  double seconds = 0; ///< wall time from start to end
  double cpuSeconds = 0;
  double peakMiB = 0; ///< largest resident set
};

/// Waits for the end of the program. Its standard output is thrown away. Raises `std::runtime_error` with
/// the last lines of its messages when it does not end with status 0.
Measurement measure(const Command& command, const std::filesystem::path& messages);

/// Runs the program under callgrind, slowly, and gives the number of instructions that it took. Otherwise as
/// `measure`.
std::uint64_t countInstructions(const Command& command, const std::filesystem::path& messages);

} // namespace qx::bench
