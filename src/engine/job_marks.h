// Moves staged jobs to their warning and error codes, and collects the texts of failures.
#pragma once

#include "engine/job_row.h"
#include "platform/environment.h"
#include "store/state_feed.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace qx {

/// Appends a line to a text, with a line break unless the text is empty.
void appendLine(std::string& text, std::string_view line);

/// Collects lines up to about one megabyte and then only counts them, so that a run over many refused jobs
/// does not exhaust memory.
class CollectedText {
public:
  void clear();
  void add(std::string_view line);
  /// The lines, and a final one with the number of omitted ones.
  std::string text() const;

private:
  std::string text_;
  std::size_t leftOut_ = 0;
};

/// The texts of all failures of the last run, and those of customer jobs alone.
struct CollectedErrors {
  CollectedText all;
  CollectedText customers;

  void clear() {
    all.clear();
    customers.clear();
  }
  void add(std::int16_t jobType, std::string_view text) {
    all.add(text);
    if (kindOf(jobType) == qxtjobkunden) customers.add(text);
  }
};

/// Called for every reason of a failed job, with the job's code before the failure.
using ErrorSink = std::function<void(std::int16_t jobType, std::string_view text)>;
/// Called for every job that failed along with another one.
using ChangeSink = std::function<void(StateChange change)>;

/// Marks the current job of a cursor: changes a waiting code and appends the reason to `Fehlertext`, one line
/// per reason. A job that is not waiting keeps its code but still gets the text.
class JobMarks {
public:
  JobMarks(Environment& environment, MissingColumns& missing, ErrorSink errors, ChangeSink changes)
      : environment_(environment), missing_(missing), errors_(std::move(errors)),
        changes_(std::move(changes)) {}

  /// 10 to 11, 20 to 21, 30 to 31, 40 to 41.
  static void markJobWarning(JobRow& job, std::string_view text);
  /// 10 to 12, 20 to 22, 30 to 32, 40 to 42. A customer contract that fails marks the customer's jobs too.
  void markJobError(JobRow& job, std::string_view text);

private:
  void markCustomerJobsOfContract(std::string_view customer);
  static void mark(JobRow& job, JobState state, std::string_view text);

  Environment& environment_;
  MissingColumns& missing_;
  ErrorSink errors_;
  ChangeSink changes_;
};

} // namespace qx
