// The file that a job file is written to.
#pragma once

#include "platform/files.h"
#include "store/job_file_report.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The target must not be written; `what()` names it and says why. Nothing was changed.
class TargetRefused : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The target cannot be a file: no name, a directory, or too long a name. Nothing was changed.
class NoTarget : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The end of an exchange that one of the two stopped; null for every other failure.
std::optional<JobFileEnd> endOfTarget(const std::exception& failure);

/// Files that a job file never replaces: those of the shared connection's database and the code tables of the
/// installation.
std::vector<std::filesystem::path> protectedFiles(const Environment& environment);

/// The permissions of a new file with the data of the shared connection's database: those of the database's
/// file, and the owner's alone when a server keeps it. Others than owner and group never have any.
std::filesystem::perms permissionsOfNewFile(const Environment& environment);

/// An open file, for example standard output, and its name for messages.
struct OpenFile {
  int descriptor;
  std::string name;
};

/// Writes a temporary file beside the target and renames it at the end, so that an existing file is never
/// half written. The temporary file is readable by its owner only; at the end it gets the permissions of the
/// file that it replaces, or those given for a new one. Anything but a plain file (a device, a pipe) is
/// written directly.
///
/// Raises `std::system_error`, which names the file. Without `commit` the destructor leaves nothing behind.
class JobFileTarget {
public:
  /// Raises `TargetRefused` when the target is one of the protected files, under whatever name, and
  /// `NoTarget`.
  JobFileTarget(const std::filesystem::path& target, const std::vector<std::filesystem::path>& untouchable,
                std::filesystem::perms ofNewFile);
  /// Writes directly to an open file, which stays open.
  explicit JobFileTarget(const OpenFile& file);
  JobFileTarget(const JobFileTarget&) = delete;
  JobFileTarget& operator=(const JobFileTarget&) = delete;
  ~JobFileTarget();

  void write(std::string_view bytes);
  /// Renames the written file to the target.
  void finish();
  /// After a failure: the incomplete file becomes the target, and the previous one is kept beside it. Returns
  /// the previous file's new name, "" when there was none. A file kept earlier is never overwritten.
  std::string finishBroken();

private:
  void openDirectly();
  void createBeside();
  void flush();
  void closeFile();
  void replace();
  void setPermissions();

  std::filesystem::path target_;
  std::filesystem::perms ofNewFile_ = std::filesystem::perms::none;
  std::filesystem::path written_; ///< the target itself when it is written directly
  std::optional<File> file_;
  std::string buffer_;
  bool direct_ = false;
  bool finished_ = false;
  bool flushFailed_ = false; ///< some of the buffer may have been written
};

} // namespace qx
