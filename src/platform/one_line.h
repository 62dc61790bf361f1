// Texts that have one line to stand on.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// The text with every run of line breaks as one blank, so that a value never begins a line of its own among
/// the lines of a list or a log.
std::string oneLine(std::string_view text);

} // namespace qx
