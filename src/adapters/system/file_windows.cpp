// Files by the calls of the C library of Windows, whose error numbers and texts are those of other systems.
#include "adapters/system/wide_text.h"
#include "platform/files.h"
#include "platform/path_text.h"

#include <windows.h>

#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <limits>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <vector>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr int bytesInUse = _O_BINARY | _O_NOINHERIT;

[[noreturn]] void raise(const std::string& name, int error) {
  throw std::system_error(error == 0 ? EIO : error, std::generic_category(), name);
}

/// Closes a handle of the system.
class Handle {
public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() {
    if (isOpen()) CloseHandle(handle_);
  }
  bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

private:
  HANDLE handle_;
};

/// Whether the system grants the right, as far as it tells, without anybody being kept from the file
/// meanwhile.
bool grants(const fs::path& path, DWORD right) {
  constexpr DWORD everyone = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Handle handle(CreateFileW(path.c_str(), right, everyone, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (handle.isOpen()) return true;
  const DWORD error = GetLastError();
  return error != ERROR_ACCESS_DENIED && error != ERROR_WRITE_PROTECT;
}

/// A name that no other process and no earlier call has chosen.
std::string unusedName(std::string_view prefix, int attempt) {
  LARGE_INTEGER now{};
  QueryPerformanceCounter(&now);
  return std::string(prefix) + std::to_string(GetCurrentProcessId()) + "-" +
         std::to_string(now.QuadPart + attempt);
}

int created(const fs::path& file) {
  return _wopen(file.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | bytesInUse, _S_IREAD | _S_IWRITE);
}

unsigned portion(std::size_t size) {
  constexpr auto most = static_cast<std::size_t>(std::numeric_limits<int>::max());
  return static_cast<unsigned>(size < most ? size : most);
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
  if (descriptor_ >= 0) _close(descriptor_);
}

File File::forReading(const fs::path& path) {
  std::error_code unknown;
  if (fs::is_directory(path, unknown)) raise(textOf(path), EISDIR);
  return {_wopen(path.c_str(), _O_RDONLY | bytesInUse), path, textOf(path)};
}

File File::forWriting(const fs::path& path) {
  return {_wopen(path.c_str(), _O_WRONLY | _O_TRUNC | bytesInUse), path, textOf(path)};
}

File File::createdIn(const fs::path& folder, std::string name, std::string_view prefix) {
  constexpr int mostAttempts = 100;
  for (int attempt = 0;; ++attempt) {
    const fs::path path = folder / pathOf(unusedName(prefix, attempt));
    const int descriptor = created(path);
    if (descriptor >= 0 || errno != EEXIST || attempt == mostAttempts)
      return {descriptor, path, std::move(name)};
  }
}

File File::ofDescriptor(int descriptor, std::string name) {
  const int another = _dup(descriptor);
  if (another >= 0) _setmode(another, _O_BINARY);
  return {another, {}, std::move(name)};
}

void File::fail() const { raise(name_, errno); }

std::size_t File::read(char* into, std::size_t size) {
  const int count = _read(descriptor_, into, portion(size));
  if (count < 0) fail();
  return static_cast<std::size_t>(count);
}

void File::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const int count = _write(descriptor_, bytes.data(), portion(bytes.size()));
    if (count < 0) fail();
    // A full disk takes a part of it, or none, without an error.
    if (count == 0) raise(name_, ENOSPC);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void File::rewind() {
  if (_lseeki64(descriptor_, 0, SEEK_SET) != 0) fail();
}

void File::synchronize() {
  if (_commit(descriptor_) != 0) fail();
}

void File::close() {
  if (_close(std::exchange(descriptor_, -1)) != 0) fail();
}

// The name is needed as long as the file may be opened again.
TemporaryFile::TemporaryFile(std::string name)
    : file_(File::createdIn(fs::temp_directory_path(), std::move(name))), path_(textOf(file_.path())) {}

TemporaryFile::~TemporaryFile() {
  std::error_code ignored;
  { const File closed = std::move(file_); }
  fs::remove(pathOf(path_), ignored);
}

bool mayWrite(const fs::path& file) {
  return grants(file, GENERIC_WRITE) && grants(fs::absolute(file).parent_path(), FILE_ADD_FILE);
}

/// The system does not remove a file that a program has open.
void removeAbandoned(const fs::path& folder, std::string_view prefix) {
  std::error_code failure;
  std::vector<fs::path> abandoned;
  for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
       entry.increment(failure)) {
    const std::string name = textOf(entry->path().filename());
    if (name.starts_with(prefix) && name.find_first_not_of("0123456789-", prefix.size()) == std::string::npos)
      abandoned.push_back(entry->path());
  }
  for (const fs::path& path : abandoned)
    if (fs::remove(path, failure)) fs::remove(pathOf(textOf(path) + "-journal"), failure);
}

void createFolders(const fs::path& folder, FileSharing /*sharing*/) {
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (failure) throw std::system_error(failure, textOf(folder));
}

bool createEmptyFile(const fs::path& file, FileSharing /*sharing*/) {
  const int descriptor = created(file);
  if (descriptor < 0 && errno == EEXIST) return false;
  if (descriptor < 0) raise(textOf(file), errno);
  _close(descriptor);
  return true;
}

void replaceFile(const fs::path& file, const fs::path& replaced) {
  if (MoveFileExW(file.c_str(), replaced.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0)
    return;
  const DWORD error = GetLastError();
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED)
    raise(textOf(replaced) + ": another program has the file open, or it is protected", EACCES);
  throw std::system_error(static_cast<int>(error), std::system_category(), textOf(replaced));
}

// The file system of Windows logs the changes of its folders itself and has no call for it.
void synchronizeFolder(const fs::path& /*folder*/) {}

} // namespace qx
