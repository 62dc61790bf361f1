// What a job-file command shows while it is at work.
#pragma once

#include "cli/json_writer.h"
#include "cli/output.h"
#include "cli/progress_bar.h"
#include "store/job_file_report.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace qx::cli {

/// Draws a bar on a terminal.
class JobFileProgress : public JobFileObserver {
public:
  JobFileProgress(const Output& output, std::string_view what);

  void progress(std::uintmax_t done, std::uintmax_t total) override;
  /// Wipes the bar.
  void end() { bar_.clear(); }

private:
  ProgressBar bar_;
  std::int16_t percent_ = -1;
};

/// Keeps the keys of the first jobs that an export cannot carry whole.
class ExportProgress final : public JobFileProgress {
public:
  explicit ExportProgress(const Output& output) : JobFileProgress(output, "export") {}

  void unreadable(std::string_view jobId) override;
  const std::set<std::string, std::less<>>& unreadableJobs() const { return jobs_; }

private:
  std::set<std::string, std::less<>> jobs_;
};

/// Prints what an import finds in single lines as it is told, and the counts at its end: as lines, or as one
/// JSON document, whatever the number of findings.
class ImportPrinter final : public JobFileProgress {
public:
  explicit ImportPrinter(const Output& output);

  void skipped(std::int64_t line, std::string_view reason) override;
  void refused(std::int64_t line, std::string_view reason) override;
  void setBack(std::int64_t line, std::string_view jobId) override;
  void withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) override;
  /// After an import that changed something or could have.
  void finish(const JobFileReport& report);

private:
  JsonWriter& beginLine(std::int64_t line, std::string_view result);
  void beginDocument();
  void finishText(const JobFileReport& report);

  const Output& output_;
  JsonWriter json_;
  bool begun_ = false;
};

} // namespace qx::cli
