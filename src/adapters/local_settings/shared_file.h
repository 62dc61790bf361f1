// A small file that several processes read, and replace as a whole.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// Readers see either the old or the new content, never a part. A lock file beside it (same name with
/// ".lock") serialises writers, so that no change is lost. Failures raise `std::runtime_error`, which names
/// the file, and leave the content unchanged.
class SharedFile {
public:
  explicit SharedFile(std::filesystem::path path) : path_(std::move(path)) {}

  /// Null when there is no such file.
  std::optional<std::string> read() const;
  /// Replaces the content ("" for a missing file) with the result of `change`. Creates missing folder and
  /// file, readable by the user only.
  void rewrite(const std::function<std::string(std::string_view)>& change) const;

private:
  std::filesystem::path path_;
};

} // namespace qx
