#include "adapters/sqlite/backup_file.h"

#include "platform/files.h"
#include "platform/path_text.h"
#include "platform/same_file.h"

#include <string_view>
#include <system_error>

namespace qx::sqlite {
namespace {

namespace fs = std::filesystem;

fs::path folderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : "."; }

[[noreturn]] void refuseExisting(const fs::path& target) {
  throw BackupRefused(textOf(target) + ": the file exists already");
}

constexpr std::string_view prefix = ".qximportjob-backup-";

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
  removeAbandoned(folderOf(target), prefix);
  file_.emplace(File::createdIn(folderOf(target), textOf(target), prefix));
}

BackupFile::~BackupFile() {
  if (!file_) return;
  std::error_code ignored;
  const fs::path left = written();
  file_.reset();
  fs::remove(left, ignored);
}

void BackupFile::finish() {
  // Takes the name for a file of our own. A rename alone would replace a file that was created meanwhile.
  if (existing_ == ExistingFile::Refuse && !createEmptyFile(target_, FileSharing::Owner))
    refuseExisting(target_);
  const fs::path from = written();
  // A system that removes no open file does not give it another name, either.
  file_.reset();
  try {
    replaceFile(from, target_);
  } catch (const std::system_error&) {
    std::error_code ignored;
    fs::remove(from, ignored);
    if (existing_ == ExistingFile::Refuse) fs::remove(target_, ignored);
    throw;
  }
  synchronizeFolder(folderOf(target_));
}

} // namespace qx::sqlite
