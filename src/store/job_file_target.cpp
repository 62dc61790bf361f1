#include "store/job_file_target.h"

#include <cerrno>
#include <system_error>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t fullBuffer = std::size_t{256} * 1024;

/// The file behind links, so that a link stays one.
fs::path resolved(const fs::path& target) {
  return fs::is_symlink(fs::symlink_status(target)) ? fs::weakly_canonical(target) : target;
}

fs::path beside(const fs::path& target, const std::string& ending) {
  fs::path name = target;
  name += ending;
  return name;
}

/// The first of "name.bak", "name.bak2"... that is free.
fs::path freeBackup(const fs::path& target) {
  fs::path name = beside(target, ".bak");
  for (int number = 2; fs::exists(fs::symlink_status(name)); ++number)
    name = beside(target, ".bak" + std::to_string(number));
  return name;
}

} // namespace

JobFileTarget::JobFileTarget(const fs::path& target) : target_(resolved(target)), written_(target_) {
  const fs::file_status status = fs::status(target_);
  direct_ = fs::exists(status) && !fs::is_regular_file(status);
  if (!direct_) written_ = beside(target_, ".part");
  stream_.rdbuf()->pubsetbuf(nullptr, 0);
  errno = 0;
  stream_.open(written_, std::ios::binary | std::ios::trunc);
  if (!stream_) throw std::system_error(errno, std::generic_category(), written_.string());
}

JobFileTarget::~JobFileTarget() {
  if (finished_ || direct_) return;
  stream_.close();
  std::error_code ignored;
  fs::remove(written_, ignored);
}

void JobFileTarget::write(std::string_view bytes) {
  buffer_ += bytes;
  if (buffer_.size() >= fullBuffer) flush();
}

void JobFileTarget::flush() {
  errno = 0;
  flushFailed_ = !stream_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  if (flushFailed_)
    throw std::system_error(errno == 0 ? EIO : errno, std::generic_category(), written_.string());
  buffer_.clear();
}

void JobFileTarget::close() {
  flush();
  errno = 0;
  stream_.close();
  if (!stream_) throw std::system_error(errno == 0 ? EIO : errno, std::generic_category(), written_.string());
}

void JobFileTarget::replace() {
  if (direct_) return;
  if (fs::exists(target_)) fs::permissions(written_, fs::status(target_).permissions());
  fs::rename(written_, target_);
}

void JobFileTarget::finish() {
  close();
  replace();
  finished_ = true;
}

std::string JobFileTarget::finishBroken() {
  if (direct_) return {};
  if (!flushFailed_) stream_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  stream_.close();
  fs::path backup;
  if (fs::exists(target_)) {
    backup = freeBackup(target_);
    fs::rename(target_, backup);
  }
  std::error_code failure;
  fs::rename(written_, target_, failure);
  if (failure) {
    if (!backup.empty()) fs::rename(backup, target_);
    throw std::system_error(failure, target_.string());
  }
  finished_ = true;
  return backup.string();
}

} // namespace qx
