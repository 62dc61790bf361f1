// What a person is told about the options: which texts they take, what holds without one, and who reads them.
#pragma once

#include "settings/options.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Which texts an option takes: "0 or 1", "whole number from -32768 to 32767" ...
std::string_view allowedValues(const OptionSpec& option);

/// Why a text is no value of the option, to follow the quoted text in a message; empty for one that is, and
/// for the empty text, which takes the value away.
std::string refusalOf(const OptionSpec& option, std::string_view text);

/// The form in which an accepted text is stored: a day as the stamp that its readers expect.
std::string storedForm(const OptionSpec& option, std::string_view text);

/// What the readers take in place of a value that is missing, and in place of `stored` when they make nothing
/// of it; empty for none.
std::string defaultOf(const OptionSpec& option);
std::string effectiveValue(const OptionSpec& option, std::string_view stored);

/// The commands that read the option, "window" for the window; empty for one that is stored for other
/// programs.
std::vector<std::string_view> readersOf(const OptionSpec& option);

/// Whether the option says what an installation wants, and so may go to another one. The others are the
/// user's own, or say what the programs are doing.
bool isConfiguration(const OptionSpec& option);

} // namespace qx
