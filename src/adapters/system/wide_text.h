// UTF-8 and the wide texts of Windows.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// What is no UTF-8 becomes U+FFFD.
std::wstring wide(std::string_view text);

/// Half a surrogate pair becomes U+FFFD.
std::string narrow(std::wstring_view text);

} // namespace qx
