// The progress and messages of a job-file command.
#pragma once

#include "cli/command.h"
#include "cli/progress_bar.h"
#include "store/job_file_report.h"
#include "store/json_writer.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace qx::cli {

/// Draws a bar on a terminal.
class JobFileProgress : public JobFileObserver {
public:
  JobFileProgress(const Output& output, ProgressUnit unit) : bar_(output, unit) {}

  void progress(std::uintmax_t done, std::uintmax_t total) override;
  /// Erases the bar.
  void end() { bar_.end(); }

private:
  ProgressBar bar_;
};

/// Keeps the keys of the first jobs that an export cannot carry completely.
class ExportProgress final : public JobFileProgress {
public:
  explicit ExportProgress(const Output& output) : JobFileProgress(output, ProgressUnit::Items) {}

  void unreadable(std::string_view jobId) override;
  const std::set<std::string, std::less<>>& unreadableJobs() const { return jobs_; }

private:
  std::set<std::string, std::less<>> jobs_;
};

/// Prints the messages of an import as they arrive and the counts at its end: as lines, or as one JSON
/// document of any length.
class ImportPrinter final : public JobFileProgress {
public:
  explicit ImportPrinter(const Output& output);

  void skipped(std::int64_t line, std::string_view reason) override;
  void refused(std::int64_t line, std::string_view reason) override;
  void setBack(std::int64_t line, std::string_view jobId) override;
  void withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) override;
  /// To be called after an import that was not refused.
  void finish(const JobFileReport& report);

private:
  JsonWriter& beginLine(std::int64_t line, std::string_view result);
  std::ostream& textLine(std::int64_t line);
  void beginDocument();

  const Output& output_;
  JsonWriter json_;
  bool begun_ = false;
};

} // namespace qx::cli
