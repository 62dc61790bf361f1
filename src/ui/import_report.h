// The result of importing a job file, as texts for the clerk.
#pragma once

#include "store/job_file_report.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Collects what the clerk has to know about an import: done jobs that were reset, and refused records.
class ImportReport final : public JobFileObserver {
public:
  void skipped(std::int64_t line, std::string_view reason) override;
  void refused(std::int64_t line, std::string_view reason) override;
  void setBack(std::int64_t line, std::string_view jobId) override;
  void withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) override;

  bool setsBack() const { return setBack_.count > 0; }
  /// The question before done jobs are reset.
  std::string question() const;
  /// The lines to show afterwards; empty when there is nothing to report.
  std::string text(std::string_view fileName, const JobFileReport& report) const;

private:
  /// The first ones, and how many there are.
  struct Lines {
    std::int64_t count = 0;
    std::vector<std::string> first;

    void add(std::string line);
    std::string listed(std::size_t most) const;
  };

  Lines setBack_;
  Lines refused_;
  Lines withoutHeader_;
};

} // namespace qx
