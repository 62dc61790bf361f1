// The file that this code is in.
#pragma once

#include <string>

namespace qx::com {

/// The full path of the dynamic library, or of the program that this is linked into.
std::wstring moduleFile();

} // namespace qx::com
