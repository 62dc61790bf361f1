#include "adapters/sqlite/backup_file.h"

#include "platform/same_file.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace qx::sqlite {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void raiseErrno(const fs::path& file) {
  throw std::system_error(errno, std::generic_category(), file.string());
}

fs::path folderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : "."; }

[[noreturn]] void refuseExisting(const fs::path& target) {
  throw BackupRefused(target.string() + ": the file exists already");
}

/// Takes the name for a file of our own. A rename alone would replace a file that was created meanwhile.
void reserve(const fs::path& target) {
  constexpr mode_t ownerOnly = 0600;
  const int file = ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  if (file < 0 && errno == EEXIST) refuseExisting(target);
  if (file < 0) raiseErrno(target);
  close(file);
}

/// After a power failure the new name is there.
void synchronize(const fs::path& folder) {
  const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) return; // a folder that cannot be read, which is no fault
  const int failed = fsync(directory) != 0 && errno != EINVAL ? errno : 0;
  close(directory);
  if (failed != 0) throw std::system_error(failed, std::generic_category(), folder.string());
}

} // namespace

BackupFile::BackupFile(const fs::path& target, ExistingFile existing,
                       const std::vector<fs::path>& untouchable)
    : target_(target), existing_(existing) {
  for (const fs::path& file : untouchable)
    if (isSameFile(target, file))
      throw BackupRefused(target.string() + ": this is a file of the database itself");
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(target, failure);
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) throw BackupRefused(target.string() + ": this is no plain file");
    if (existing == ExistingFile::Refuse) refuseExisting(target);
  }
  std::string name = (folderOf(target) / ".qximportjob-XXXXXX").string();
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) raiseErrno(target);
  close(file);
  written_ = name;
}

BackupFile::~BackupFile() {
  std::error_code ignored;
  if (!written_.empty()) fs::remove(written_, ignored);
}

void BackupFile::finish() {
  if (existing_ == ExistingFile::Refuse) reserve(target_);
  std::error_code failure;
  fs::rename(written_, target_, failure);
  if (failure) {
    std::error_code ignored;
    if (existing_ == ExistingFile::Refuse) fs::remove(target_, ignored);
    throw std::system_error(failure, target_.string());
  }
  written_.clear();
  synchronize(folderOf(target_));
}

} // namespace qx::sqlite
