// SQLite's handle of an open database.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

struct sqlite3;

namespace qx::sqlite {

/// What shows that a file has not been written meanwhile.
struct FileStamp {
  std::filesystem::file_time_type written;
  std::uintmax_t size = 0;
  bool journal = false; ///< a journal with content lies beside it
  bool operator==(const FileStamp&) const = default;

  static FileStamp of(const std::filesystem::path& file);
};

/// Owns the handle, knows whether a unit of work is open, and turns result codes into failures.
///
/// SQLite may roll a unit back by itself, and the caller of the statement may have swallowed the failure.
/// Such a unit stays lost until its owner ends it: until then every statement raises, so that nothing is
/// written outside a unit by mistake.
class DatabaseHandle {
public:
  DatabaseHandle(sqlite3* handle, std::string target);
  DatabaseHandle(const DatabaseHandle&) = delete;
  DatabaseHandle& operator=(const DatabaseHandle&) = delete;
  /// Remaining compiled statements keep the database open until they are destroyed.
  ~DatabaseHandle();

  sqlite3* get() const { return handle_; }
  const std::string& target() const { return target_; }

  void beginUnit() { unitBegun_ = true; }
  void endUnit() { unitBegun_ = false; }
  /// True from the beginning of a unit to its end, also when it was lost in between.
  bool unitBegun() const { return unitBegun_; }
  bool unitLost() const;
  /// Raises `WorkLostError` when the unit was lost.
  void requireUnit() const;

  /// From now on every statement raises when the file is not as it was: it is read without locks.
  void watch(const FileStamp& before) { watched_ = before; }
  /// Raises `BusyError` when a watched file has changed, so that what was read may not fit together.
  void requireUnchanged() const {
    if (watched_) compareStamp();
  }

  /// Raises for every result but success.
  void check(int code) const;
  /// Raises the error of the last failure.
  [[noreturn]] void fail() const;
  [[noreturn]] void failForMemory() const;

private:
  void compareStamp() const;

  sqlite3* handle_;
  std::string target_;
  std::optional<FileStamp> watched_;
  bool unitBegun_ = false;
};

} // namespace qx::sqlite
