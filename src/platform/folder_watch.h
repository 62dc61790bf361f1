// A folder into which other programs put files.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace qx {

/// What has happened in a watched folder.
struct FolderEvents {
  std::vector<std::string> finished; ///< names of files that were moved in, or closed after writing
  bool gone = false;                 ///< the folder does not lie there any more
};

/// Notices finished files from its construction on. While it exists no other one watches the same folder.
class FolderWatch {
public:
  /// Raises `std::system_error`: `std::errc::operation_would_block` when another program watches the folder,
  /// `std::errc::function_not_supported` where this is not possible at all.
  explicit FolderWatch(const std::filesystem::path& folder);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch();

  /// Waits until something happens, but no longer than `limit`, and not at all once interrupted. Changes by
  /// other machines, those of a flood of files and the deletion of the folder may go unnoticed: look into the
  /// folder now and then.
  FolderEvents wait(std::chrono::milliseconds limit);
  /// Ends this and every later wait. May be called from a signal handler.
  void interrupt() noexcept;
  bool interrupted() const noexcept;

private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Whether a program has the file open for writing. False where that cannot be told, as for a file of
/// another user.
bool isBeingWritten(const std::filesystem::path& file);

} // namespace qx
