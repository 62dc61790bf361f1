// What the help of each command shows beside its options.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace qx::cli {

struct CommandExamples {
  std::string_view command; ///< "stage", "settings set"
  std::array<std::string_view, 2> lines;
};

/// Two calls of every command.
std::span<const CommandExamples> commandExamples();

/// What the environment decides, a line each.
std::span<const std::string_view> environmentLines();

} // namespace qx::cli
