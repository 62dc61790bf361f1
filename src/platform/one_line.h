// Texts for a single line.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// The text with every run of line breaks replaced by one blank, so that a value cannot forge a line of a
/// list or log.
std::string oneLine(std::string_view text);

} // namespace qx
