// File names as UTF-8 text and as paths.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qx {

/// The path of a UTF-8 file name. A path made of a plain string would take its bytes for characters on
/// Windows.
std::filesystem::path pathOf(std::string_view name);

/// The name in UTF-8, with the separators of the system.
std::string textOf(const std::filesystem::path& path);

} // namespace qx
