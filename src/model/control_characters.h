// Characters that are not shown but act.
#pragma once

#include <string_view>

namespace qx {

/// Whether a character (UTF-8) acts on a terminal instead of being shown: U+0080 to U+009F, the separators of
/// lines and the marks of direction. (Those of ASCII are not asked for.)
bool isControl(std::string_view character);

} // namespace qx
