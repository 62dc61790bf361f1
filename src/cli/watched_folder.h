// The files of a watched folder: those that came in, that which is being staged, and those that are through.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// A file that was taken out of the folder, under a key that no other file has.
struct TakenFile {
  std::string key;
  std::string name; ///< as it came in
  std::filesystem::path path;
};

/// Files wait in the folder itself. One that is taken lies in `working`, its key in front of its name, until
/// it lies in `done` or `rejected`. Each move lasts through a power failure before the member returns.
/// Members raise `std::system_error`.
class WatchedFolder {
public:
  /// In bytes. A key stands in front of the name of a file that is taken, a number and `.error.txt` behind
  /// it.
  static constexpr std::size_t longestName = 200;

  /// Makes the folders below it that are missing, with its permissions, and tries whether files can be moved
  /// there.
  explicit WatchedFolder(std::filesystem::path folder);

  const std::filesystem::path& path() const { return folder_; }
  /// The names of the waiting files of jobs (*.json) in their order.
  std::vector<std::string> waiting() const;
  /// Whether the file was not changed for a while; false when it is not there any more.
  bool isSettled(const std::string& name) const;
  TakenFile take(const std::string& name, const std::string& key) const;
  /// Those that were taken and not moved on.
  std::vector<TakenFile> taken() const;
  /// Returns where the file lies then, below the folder.
  std::filesystem::path moveToDone(const TakenFile& file) const;
  /// Writes the reason beside it, as NAME.error.txt.
  std::filesystem::path moveToRejected(const TakenFile& file, std::string_view reason) const;

private:
  std::filesystem::path move(const TakenFile& file, const std::filesystem::path& target) const;

  std::filesystem::path folder_;
};

} // namespace qx::cli
