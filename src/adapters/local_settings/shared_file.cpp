#include "adapters/local_settings/shared_file.h"

#include "adapters/local_settings/file_content.h"

#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace qx {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, std::string_view verb, int error) {
  std::string message = "the file '" + path.string() + "' cannot be ";
  message.append(verb).append(": ").append(std::generic_category().message(error));
  throw std::runtime_error(message);
}

class FileDescriptor {
public:
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&&) = delete;
  FileDescriptor& operator=(FileDescriptor&&) = delete;
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }
  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

private:
  int number_;
};

constexpr mode_t onlyTheUser = S_IRUSR | S_IWUSR;

int openForUser(const fs::path& path, int flags) {
  return ::open(path.c_str(), flags | O_CLOEXEC, onlyTheUser);
}

void lock(const FileDescriptor& file, const fs::path& path) {
  if (!file.isOpen()) fail(path, "created", errno);
  while (::flock(file.number(), LOCK_EX) != 0)
    if (errno != EINTR) fail(path, "locked", errno);
}

void writeAll(const FileDescriptor& file, std::string_view content, const fs::path& path) {
  while (!content.empty()) {
    const ssize_t count = ::write(file.number(), content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail(path, "written", errno);
    content.remove_prefix(static_cast<std::size_t>(count));
  }
}

/// Removes a half-written file unless it was renamed.
class Draft {
public:
  explicit Draft(fs::path path) : path_(std::move(path)) {}
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  Draft(Draft&&) = delete;
  Draft& operator=(Draft&&) = delete;
  ~Draft() {
    if (!placed_) ::unlink(path_.c_str());
  }

  void write(std::string_view content) const {
    const FileDescriptor file(openForUser(path_, O_WRONLY | O_CREAT | O_TRUNC));
    if (!file.isOpen()) fail(path_, "created", errno);
    writeAll(file, content, path_);
    if (::fsync(file.number()) != 0) fail(path_, "written", errno);
  }
  void replace(const fs::path& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) fail(target, "replaced", errno);
    placed_ = true;
  }

private:
  fs::path path_;
  bool placed_ = false;
};

/// Makes the rename last through a power failure.
void syncFolder(const fs::path& folder) {
  const FileDescriptor descriptor(openForUser(folder, O_RDONLY | O_DIRECTORY));
  if (!descriptor.isOpen() || ::fsync(descriptor.number()) != 0) fail(folder, "written", errno);
}

fs::path withEnding(const fs::path& path, std::string_view ending) {
  fs::path longer = path;
  longer += ending;
  return longer;
}

} // namespace

std::optional<std::string> SharedFile::read() const { return contentOf(path_); }

void SharedFile::rewrite(const std::function<std::string(std::string_view)>& change) const {
  std::error_code error;
  const fs::path folder = path_.parent_path();
  fs::create_directories(folder, error);
  if (error) fail(folder, "created", error.value());
  const fs::path lockPath = withEnding(path_, ".lock");
  const FileDescriptor turn(openForUser(lockPath, O_RDWR | O_CREAT));
  lock(turn, lockPath);
  // A symbolic link stays a link.
  fs::path target = fs::canonical(path_, error);
  if (error) target = path_;
  Draft draft(withEnding(target, ".new"));
  draft.write(change(read().value_or("")));
  draft.replace(target);
  syncFolder(target.parent_path());
}

} // namespace qx
