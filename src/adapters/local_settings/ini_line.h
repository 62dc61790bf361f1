// The lines of INI and profile files.
#pragma once

#include <string_view>

namespace qx {

/// Without the blanks at either end that do not count on a line.
std::string_view withoutLineBlanks(std::string_view text);

/// Takes the next line off the front of the text, without its end and its outer blanks.
std::string_view takeIniLine(std::string_view& text);

} // namespace qx
