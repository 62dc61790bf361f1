// What reading a job file came to, told to the clerk.
#pragma once

#include "store/job_file_report.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Keeps what the clerk has to know of an import: jobs that were done and are no longer, and what was
/// refused.
class ImportReport final : public JobFileObserver {
public:
  void skipped(std::int64_t line, std::string_view reason) override;
  void refused(std::int64_t line, std::string_view reason) override;
  void setBack(std::int64_t line, std::string_view jobId) override;
  void withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) override;

  bool setsBack() const { return setBack_.count > 0; }
  /// The question before done jobs are set back.
  std::string question() const;
  /// The lines to be shown afterwards; empty when the file was read without anything to tell.
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
