// The file that a job file is written to.
#pragma once

#include "store/job_file_report.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// A target that must not be written; `what()` names it and says why. Nothing was changed.
class TargetRefused : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A target that cannot be one: without a name, a directory, a name that is too long. Nothing was changed.
class NoTarget : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// How an exchange ends that one of the two stopped; null for every other failure.
std::optional<JobFileEnd> endOfTarget(const std::exception& failure);

/// What a job file never replaces: the files of the shared connection's database and the code tables of the
/// installation.
std::vector<std::filesystem::path> protectedFiles(const Environment& environment);

/// Writes beside the target and takes its place at the end, so that a file that stands there is never half
/// written. The file beside it has a name of its own and only its owner reads it; at the end it takes the
/// permissions of the file that it replaces. What is no plain file (a device, a pipe) is written directly.
///
/// Raises `std::system_error` that names the file. A target that is dropped leaves nothing behind.
class JobFileTarget {
public:
  /// Raises `TargetRefused` when the target is one of the protected files, under whatever name, and
  /// `NoTarget`.
  JobFileTarget(const std::filesystem::path& target, const std::vector<std::filesystem::path>& untouchable);
  /// Writes directly to an open file, which stays open; `name` is for messages.
  JobFileTarget(int descriptor, const std::string& name);
  JobFileTarget(const JobFileTarget&) = delete;
  JobFileTarget& operator=(const JobFileTarget&) = delete;
  ~JobFileTarget();

  void write(std::string_view bytes);
  /// Takes the target's place.
  void finish();
  /// After a failure: what could be written takes the target's place, and the file that stood there is kept
  /// beside it. Returns its name, "" when none was there. A file kept earlier is never overwritten.
  std::string finishBroken();

private:
  void openDirectly();
  void createBeside();
  void flush();
  bool writeBuffer();
  void closeFile();
  void replace();
  [[noreturn]] void fail(int error) const;

  std::filesystem::path target_;
  std::filesystem::path written_; ///< the target itself when it is written directly
  int file_ = -1;
  std::string buffer_;
  bool direct_ = false;
  bool finished_ = false;
  bool flushFailed_ = false; ///< some of the buffer may have been written
};

} // namespace qx
