#include "store/job_file_target.h"

#include "platform/path_text.h"
#include "platform/same_file.h"
#include "rules/code_tables.h"
#include "store/job_file_line.h"

#include <exception>
#include <string>
#include <system_error>
#include <utility>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t fullBuffer = std::size_t{256} * 1024;

/// The target of symbolic links, existing or not, so that a link stays a link.
fs::path resolved(fs::path target) {
  constexpr int mostLinks = 40;
  for (int link = 0; link < mostLinks && fs::is_symlink(fs::symlink_status(target)); ++link)
    target = target.parent_path() / fs::read_symlink(target);
  return target;
}

/// Whether the target is a device or a pipe. Raises `NoTarget`.
bool isWrittenDirectly(const fs::path& target) {
  if (target.empty()) throw NoTarget("the job file has no name");
  std::error_code failure;
  const fs::file_status status = fs::status(target, failure);
  if (fs::is_directory(status)) throw NoTarget(textOf(target) + ": it is a directory");
  if (failure == std::errc::filename_too_long || failure == std::errc::too_many_symbolic_link_levels)
    throw NoTarget(textOf(target) + ": " + failure.message());
  return fs::exists(status) && !fs::is_regular_file(status);
}

/// The first of "name.bak", "name.bak2"... that does not exist.
fs::path freeBackup(const fs::path& target) {
  const auto ending = [&](const std::string& text) {
    fs::path name = target;
    return name += text;
  };
  fs::path name = ending(".bak");
  for (int number = 2; fs::exists(fs::symlink_status(name)); ++number)
    name = ending(".bak" + std::to_string(number));
  return name;
}

} // namespace

std::vector<fs::path> protectedFiles(const Environment& environment) {
  std::vector<fs::path> files;
  if (environment.connection) files = environment.connection->files();
  std::string folder;
  try {
    folder = environment.components.createProfile()->GetAppPath();
  } catch (const std::exception& error) {
    // A host without the component has no application directory and no code tables of its own.
    environment.diagnostics.report({"application directory", error.what(), ""});
    return files;
  }
  files.push_back(codeTablesFile(pathOf(folder)));
  return files;
}

fs::perms permissionsOfNewFile(const Environment& environment) {
  constexpr fs::perms ownersAlone = fs::perms::owner_read | fs::perms::owner_write;
  constexpr fs::perms most = ownersAlone | fs::perms::group_read | fs::perms::group_write;
  const auto files = environment.connection ? environment.connection->files() : std::vector<fs::path>();
  std::error_code unknown;
  const fs::perms ofDatabase = files.empty() ? ownersAlone : fs::status(files.front(), unknown).permissions();
  return unknown ? ownersAlone : (ofDatabase & most) | ownersAlone;
}

std::optional<JobFileEnd> endOfTarget(const std::exception& failure) {
  if (dynamic_cast<const TargetRefused*>(&failure) != nullptr) return JobFileEnd::TargetRefused;
  if (dynamic_cast<const NoTarget*>(&failure) != nullptr) return JobFileEnd::NoFile;
  return std::nullopt;
}

JobFileTarget::JobFileTarget(const fs::path& target, const std::vector<fs::path>& untouchable,
                             fs::perms ofNewFile)
    : ofNewFile_(ofNewFile), direct_(isWrittenDirectly(target)) {
  target_ = direct_ ? target : resolved(target);
  for (const fs::path& file : untouchable)
    if (isSameFile(target_, file))
      throw TargetRefused(textOf(target) + ": the file belongs to the database (" + textOf(file) +
                          ") and is not replaced");
  if (direct_)
    openDirectly();
  else
    createBeside();
}

JobFileTarget::JobFileTarget(const OpenFile& file)
    : target_(pathOf(file.name)), written_(target_), file_(File::ofDescriptor(file.descriptor, file.name)),
      direct_(true) {}

void JobFileTarget::openDirectly() {
  written_ = target_;
  file_.emplace(File::forWriting(target_));
}

void JobFileTarget::createBeside() {
  file_.emplace(File::createdIn(target_.parent_path(), textOf(target_)));
  written_ = file_->path();
}

JobFileTarget::~JobFileTarget() {
  file_.reset();
  if (finished_ || direct_ || written_.empty()) return;
  std::error_code ignored;
  fs::remove(written_, ignored);
}

void JobFileTarget::write(std::string_view bytes) {
  buffer_ += bytes;
  if (buffer_.size() >= fullBuffer) flush();
}

void JobFileTarget::flush() {
  flushFailed_ = true;
  file_->write(buffer_);
  flushFailed_ = false;
  buffer_.clear();
}

void JobFileTarget::closeFile() {
  flush();
  // Otherwise a power failure could leave an empty file as the target.
  if (!direct_) file_->synchronize();
  File file = std::move(*file_);
  file_.reset();
  file.close();
}

void JobFileTarget::replace() {
  if (direct_) return;
  setPermissions();
  replaceFile(written_, target_);
}

void JobFileTarget::setPermissions() {
  fs::permissions(written_, fs::exists(target_) ? fs::status(target_).permissions() : ofNewFile_);
}

void JobFileTarget::finish() {
  closeFile();
  replace();
  finished_ = true;
}

std::string JobFileTarget::finishBroken() {
  if (direct_) return {};
  try {
    if (file_ && !flushFailed_) file_->write(buffer_);
  } catch (const std::system_error&) {
    // The file is incomplete anyway, and the caller knows of the first failure.
    buffer_.clear();
  }
  file_.reset();
  setPermissions();
  fs::path backup;
  if (fs::exists(target_)) {
    backup = freeBackup(target_);
    fs::rename(target_, backup);
  }
  try {
    replaceFile(written_, target_);
  } catch (const std::system_error&) {
    if (!backup.empty()) fs::rename(backup, target_);
    throw;
  }
  finished_ = true;
  return textOf(backup);
}

} // namespace qx
