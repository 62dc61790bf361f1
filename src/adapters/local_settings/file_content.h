// The content of a small file.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace qx {

/// Null when there is no such file. Raises `std::runtime_error`, which names the file.
std::optional<std::string> contentOf(const std::filesystem::path& path);

} // namespace qx
