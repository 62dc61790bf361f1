// The result of reading or writing a job file.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

enum class JobFileVersion : std::uint8_t { One = 1, Two = 2 };

enum class JobFileEnd : std::uint8_t {
  Complete,      ///< read or written to the end; single records may have been refused
  WrongBanner,   ///< not a job file of the version asked for; nothing was changed
  NoFile,        ///< not the name of a file: missing, or a directory; nothing was changed
  Failed,        ///< stopped by a failure; what was counted is kept
  TargetRefused, ///< the target belongs to the database or the installation; nothing was changed
};

/// Counts of what is durable.
struct JobFileCounts {
  std::int64_t jobs = 0;
  std::int64_t positions = 0;
  std::int64_t skipped = 0;       ///< records of no kind and lines outside a record; jobs not exported
  std::int64_t refused = 0;       ///< defective records
  std::int64_t setBack = 0;       ///< done jobs that were reset
  std::int64_t unreadable = 0;    ///< lines of an export that no import reads back unchanged
  std::int64_t withoutHeader = 0; ///< positions stored although their job is not staged

  JobFileCounts& operator+=(const JobFileCounts& other) {
    jobs += other.jobs;
    positions += other.positions;
    skipped += other.skipped;
    refused += other.refused;
    setBack += other.setBack;
    unreadable += other.unreadable;
    withoutHeader += other.withoutHeader;
    return *this;
  }
};

struct JobFileReport {
  JobFileEnd end = JobFileEnd::Failed;
  JobFileCounts counts;
  std::int64_t lines = 0;    ///< physical lines, of scrambling and unscrambling only
  std::string failure;       ///< the cause, of all ends but `Complete`
  std::string germanFailure; ///< of a failed import: the same for a box
  std::string backup;        ///< of a failed export: where the file that stood there before is kept
};

/// Receives progress while a job file is read or written, possibly inside a unit of work: it only stores its
/// arguments.
class JobFileObserver {
public:
  virtual ~JobFileObserver() = default;
  /// Bytes of an import, rows of an export.
  virtual void progress(std::uintmax_t /*done*/, std::uintmax_t /*total*/) {}
  /// A record or text that the sender may miss was skipped.
  virtual void skipped(std::int64_t /*line*/, std::string_view /*reason*/) {}
  virtual void refused(std::int64_t /*line*/, std::string_view /*reason*/) {}
  /// A done job is waiting or parked again, as in the file. Called once this is durable.
  virtual void setBack(std::int64_t /*line*/, std::string_view /*jobId*/) {}
  /// A position was stored whose job is not staged. Called once this is durable.
  virtual void withoutHeader(std::int64_t /*line*/, std::string_view /*jobId*/,
                             std::string_view /*childId*/) {}
  /// A line of an export will not be read back unchanged: a value holds a quote or a semicolon, it is longer
  /// than an import reads, or it is a position that version 2 does not read.
  virtual void unreadable(std::string_view /*jobId*/) {}
};

/// Shows the box for the outcome of an import, if any. True when there was none.
bool showImportResult(Environment& environment, const JobFileReport& report);
/// The same for an export.
bool showExportResult(Environment& environment, const JobFileReport& report);

/// The text for a file that is no job file of the version asked for. Its lower-case first letter is
/// deliberate.
inline constexpr std::string_view wrongBannerText =
    "Die ausgewählte Datei entspricht nicht den konventionen.";

} // namespace qx
