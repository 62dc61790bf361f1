// Scripts with which shells complete the program's commands and options.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace qx::cli {

/// The words that a shell offers as the value of an option or argument. One without words whose value is the
/// name of a file need not be listed.
using OfferedWords = std::map<const CLI::Option*, std::vector<std::string>>;

/// The shells that a script can be made for.
inline constexpr std::string_view completionShells[] = {"bash", "zsh", "fish"};

/// The script for one of `completionShells`, made from the options and commands of `app`; empty for another
/// shell.
std::string completionScript(const CLI::App& app, const OfferedWords& offered, std::string_view shell);

} // namespace qx::cli
