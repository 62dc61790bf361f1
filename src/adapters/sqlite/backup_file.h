// The file that a backup is written to.
#pragma once

#include "platform/files.h"
#include "platform/maintenance.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace qx::sqlite {

/// Creates an empty file beside the target, readable by its owner only, and gives it the target's name at the
/// end. Without `finish` the destructor leaves nothing behind. What backups that were killed have left there
/// is removed.
class BackupFile {
public:
  /// Raises `BackupRefused` when the target is one of the `untouchable` files, under whatever name, is no
  /// plain file, or exists and must not be replaced; `std::system_error` when it cannot be created.
  BackupFile(const std::filesystem::path& target, ExistingFile existing,
             const std::vector<std::filesystem::path>& untouchable);
  BackupFile(const BackupFile&) = delete;
  BackupFile& operator=(const BackupFile&) = delete;
  ~BackupFile();

  /// The file to write.
  const std::filesystem::path& written() const { return file_->path(); }
  void finish();

private:
  std::filesystem::path target_;
  ExistingFile existing_;
  std::optional<File> file_; ///< open, so that no other backup takes it for an abandoned one
};

} // namespace qx::sqlite
