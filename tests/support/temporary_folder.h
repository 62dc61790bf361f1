// A folder that lives as long as a test.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qx {

/// Created empty below the system's folder for temporary files and removed with all that it holds.
class TemporaryFolder {
public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::filesystem::path& path() const { return path_; }
  /// Writes a file below the folder, its own folders included. Raises when it cannot.
  void write(const std::filesystem::path& name, std::string_view content) const;
  /// The bytes of a file below the folder. Raises when it cannot be read.
  std::string read(const std::filesystem::path& name) const;

private:
  std::filesystem::path path_;
};

} // namespace qx
