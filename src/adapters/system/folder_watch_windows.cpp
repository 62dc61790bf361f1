// Folders cannot be watched here yet.
#include "platform/folder_watch.h"

#include "platform/path_text.h"

#include <system_error>

namespace qx {

struct FolderWatch::State {};

FolderWatch::FolderWatch(const std::filesystem::path& folder) {
  throw std::system_error(std::make_error_code(std::errc::function_not_supported), textOf(folder));
}

FolderWatch::~FolderWatch() = default;

FolderEvents FolderWatch::wait(std::chrono::milliseconds /*limit*/) { return {}; }

void FolderWatch::interrupt() noexcept {}

bool FolderWatch::interrupted() const noexcept { return true; }

bool isBeingWritten(const std::filesystem::path& /*file*/) { return false; }

} // namespace qx
