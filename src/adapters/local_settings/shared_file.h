// A small file that several processes read, and replace as a whole.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// Readers see either the old or the new content, never a part. Writers take turns by a lock file beside it
/// (same name with ".lock"), so that none loses what another wrote. Failures raise `std::runtime_error` that
/// names the file; the old content is then unchanged.
class SharedFile {
public:
  explicit SharedFile(std::filesystem::path path) : path_(std::move(path)) {}

  /// Null when there is no such file.
  std::optional<std::string> read() const;
  /// Replaces the content by what `change` makes of it, "" for a missing file. Creates the folder and the
  /// file, which only the user may read.
  void rewrite(const std::function<std::string(std::string_view)>& change) const;

private:
  std::filesystem::path path_;
};

} // namespace qx
