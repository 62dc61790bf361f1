// The file of the library itself.
#pragma once

#include <string>

namespace qx::com {

/// The full path of this dynamic library.
std::wstring moduleFile();

} // namespace qx::com
