#include "adapters/sqlite/backup_file.h"

#include "platform/files.h"
#include "platform/path_text.h"
#include "platform/same_file.h"

#include <system_error>

namespace qx::sqlite {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : "."; }

[[noreturn]] void refuseExisting(const fs::path& target) {
  throw BackupRefused(textOf(target) + ": the file exists already");
}

} // namespace

BackupFile::BackupFile(const fs::path& target, ExistingFile existing,
                       const std::vector<fs::path>& untouchable)
    : target_(target), existing_(existing) {
  for (const fs::path& file : untouchable)
    if (isSameFile(target, file))
      throw BackupRefused(textOf(target) + ": this is a file of the database itself");
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(target, failure);
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) throw BackupRefused(textOf(target) + ": this is no plain file");
    if (existing == ExistingFile::Refuse) refuseExisting(target);
  }
  written_ = File::createdIn(folderOf(target), textOf(target)).path();
}

BackupFile::~BackupFile() {
  std::error_code ignored;
  if (!written_.empty()) fs::remove(written_, ignored);
}

void BackupFile::finish() {
  // Takes the name for a file of our own. A rename alone would replace a file that was created meanwhile.
  if (existing_ == ExistingFile::Refuse && !createEmptyFile(target_, FileSharing::Owner))
    refuseExisting(target_);
  try {
    replaceFile(written_, target_);
  } catch (const std::system_error&) {
    std::error_code ignored;
    if (existing_ == ExistingFile::Refuse) fs::remove(target_, ignored);
    throw;
  }
  written_.clear();
  synchronizeFolder(folderOf(target_));
}

} // namespace qx::sqlite
