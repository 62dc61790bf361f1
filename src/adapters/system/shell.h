// What a user types.
#pragma once

#include <string>

namespace qx {

/// The text as one word of the system's command line, quoted when necessary.
std::string shellWord(const std::string& text);

} // namespace qx
