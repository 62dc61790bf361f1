// Whether two names are those of one file.
#pragma once

#include <filesystem>

namespace qx {

/// Existing files are compared by device and inode. Names of files that do not exist yet, as a journal may
/// not, are compared within their folder.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

} // namespace qx
