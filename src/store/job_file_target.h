// The file that a job file is written to.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qx {

/// Writes beside the target and takes its place at the end, so that a file that stands there is never half
/// written. What is no plain file (a device, a pipe) is written directly.
///
/// Raises `std::system_error` that names the file. A target that is dropped leaves nothing behind.
class JobFileTarget {
public:
  explicit JobFileTarget(const std::filesystem::path& target);
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
  void flush();
  void close();
  void replace();

  std::filesystem::path target_;
  std::filesystem::path written_; ///< the target itself when it is written directly
  std::ofstream stream_;
  std::string buffer_;
  bool direct_ = false;
  bool finished_ = false;
  bool flushFailed_ = false; ///< some of the buffer may have been written
};

} // namespace qx
