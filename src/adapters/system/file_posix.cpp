// Files by the calls of POSIX.
#include "platform/files.h"

#include "platform/path_text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace qx {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void raise(const std::string& name) {
  throw std::system_error(errno == 0 ? EIO : errno, std::generic_category(), name);
}

/// The permissions that are asked for, whatever the process's mask takes away.
void permit(const fs::path& path, mode_t mode) {
  if (chmod(path.c_str(), mode) != 0) raise(path.string());
}

fs::path temporaryFolder() {
  std::error_code error;
  fs::path folder = fs::temp_directory_path(error);
  return error ? fs::path("/tmp") : folder;
}

constexpr std::string_view unusedEnd = "XXXXXX";

/// False when another program has the lock; true on a file system without locks.
bool locked(int descriptor) { return flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

bool isNamed(int descriptor, const std::string& name) {
  struct stat open {};
  struct stat named {};
  return fstat(descriptor, &open) == 0 && lstat(name.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
         open.st_dev == named.st_dev;
}

/// A file of this user that nobody holds.
void removeIfAbandoned(const fs::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  struct stat status {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
      flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
    std::error_code ignored;
    fs::remove(path.string() + "-journal", ignored);
    fs::remove(path, ignored);
  }
  ::close(descriptor);
}

} // namespace

File::File(int descriptor, fs::path path, std::string name)
    : descriptor_(descriptor), path_(std::move(path)), name_(std::move(name)) {
  if (descriptor_ < 0) fail();
}

File::File(File&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)),
      name_(std::move(other.name_)) {}

File::~File() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

File File::forReading(const fs::path& path) {
  return {::open(path.c_str(), O_RDONLY | O_CLOEXEC), path, textOf(path)};
}

File File::forWriting(const fs::path& path) {
  return {::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC), path, textOf(path)};
}

File File::createdIn(const fs::path& folder, std::string name, std::string_view prefix) {
  for (;;) {
    std::string pattern = (folder / (std::string(prefix) + std::string(unusedEnd))).string();
    const int descriptor = mkostemp(pattern.data(), O_CLOEXEC);
    // One that was removed in between, as an abandoned one, is made anew.
    if (descriptor < 0 || (locked(descriptor) && isNamed(descriptor, pattern)))
      return {descriptor, pattern, std::move(name)};
    ::close(descriptor);
  }
}

File File::ofDescriptor(int descriptor, std::string name) {
  return {fcntl(descriptor, F_DUPFD_CLOEXEC, 0), {}, std::move(name)};
}

void File::fail() const { raise(name_); }

std::size_t File::read(char* into, std::size_t size) {
  for (;;) {
    const ssize_t count = ::read(descriptor_, into, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) fail();
  }
}

void File::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void File::rewind() {
  if (lseek(descriptor_, 0, SEEK_SET) != 0) fail();
}

void File::synchronize() {
  if (fsync(descriptor_) != 0) fail();
}

void File::close() {
  if (::close(std::exchange(descriptor_, -1)) != 0) fail();
}

// A file without a name, which no crash leaves behind.
TemporaryFile::TemporaryFile(std::string name) : file_(File::createdIn(temporaryFolder(), std::move(name))) {
  unlink(file_.path().c_str());
  path_ = "/dev/fd/" + std::to_string(file_.descriptor());
}

TemporaryFile::~TemporaryFile() = default;

bool mayWrite(const fs::path& file) {
  return access(file.c_str(), W_OK) == 0 && access(fs::absolute(file).parent_path().c_str(), W_OK) == 0;
}

void removeAbandoned(const fs::path& folder, std::string_view prefix) {
  std::error_code failure;
  std::vector<fs::path> abandoned;
  for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
       entry.increment(failure)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with(prefix) && name.size() == prefix.size() + unusedEnd.size())
      abandoned.push_back(entry->path());
  }
  for (const fs::path& path : abandoned) removeIfAbandoned(path);
}

void createFolders(const fs::path& folder, FileSharing sharing) {
  constexpr mode_t ownerOnly = 0700;
  // Journals, which each user creates anew, take the group of the folder.
  constexpr mode_t ownerAndGroup = 02770;
  fs::path path;
  for (const fs::path& part : folder) {
    path /= part;
    std::error_code unknown;
    if (fs::exists(path, unknown)) continue;
    if (mkdir(path.c_str(), ownerOnly) == 0) {
      if (sharing == FileSharing::Group) permit(path, ownerAndGroup);
    } else if (errno != EEXIST) {
      raise(path.string());
    }
  }
}

bool createEmptyFile(const fs::path& file, FileSharing sharing) {
  constexpr mode_t ownerOnly = 0600;
  constexpr mode_t ownerAndGroup = 0660;
  const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  if (descriptor < 0 && errno == EEXIST) return false;
  if (descriptor < 0) raise(file.string());
  ::close(descriptor);
  if (sharing == FileSharing::Group) permit(file, ownerAndGroup);
  return true;
}

void replaceFile(const fs::path& file, const fs::path& replaced) {
  if (std::rename(file.c_str(), replaced.c_str()) != 0) raise(replaced.string());
}

void synchronizeFolder(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  const int failed = fsync(descriptor) != 0 && errno != EINVAL ? errno : 0;
  ::close(descriptor);
  if (failed != 0) throw std::system_error(failed, std::generic_category(), folder.string());
}

} // namespace qx
