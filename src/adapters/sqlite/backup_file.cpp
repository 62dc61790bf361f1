#include "adapters/sqlite/backup_file.h"

#include "platform/same_file.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
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

constexpr std::string_view prefix = ".qximportjob-backup-";
constexpr std::string_view pattern = "XXXXXX";

/// False when another program has the lock; true on a file system without locks.
bool locked(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

bool isNamed(int file, const std::string& name) {
  struct stat open {};
  struct stat named {};
  return fstat(file, &open) == 0 && lstat(name.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
         open.st_dev == named.st_dev;
}

/// Creates a file and locks it. One that was removed in between, as a leftover, is made anew.
int createLocked(const fs::path& folder, std::string& name) {
  while (true) {
    name = (folder / (std::string(prefix) + std::string(pattern))).string();
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0 || (locked(file) && isNamed(file, name))) return file;
    close(file);
  }
}

/// A file of this user that nobody holds; its journal goes with it. Where that fails it does no harm.
void removeLeftover(const fs::path& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return;
  struct stat status {};
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
      flock(file, LOCK_EX | LOCK_NB) == 0) {
    std::error_code ignored;
    fs::remove(path.string() + "-journal", ignored);
    fs::remove(path, ignored);
  }
  close(file);
}

void removeLeftovers(const fs::path& folder) {
  std::error_code failure;
  std::vector<fs::path> leftovers;
  for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
       entry.increment(failure)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with(prefix) && name.size() == prefix.size() + pattern.size())
      leftovers.push_back(entry->path());
  }
  for (const fs::path& leftover : leftovers) removeLeftover(leftover);
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
  removeLeftovers(folderOf(target));
  std::string name;
  file_ = createLocked(folderOf(target), name);
  if (file_ < 0) raiseErrno(target);
  written_ = name;
}

BackupFile::~BackupFile() {
  std::error_code ignored;
  if (!written_.empty()) fs::remove(written_, ignored);
  close(file_);
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
