// What holds up the parked jobs, grouped by cause.
#pragma once

#include "store/job_list.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One cause: the text of a rule with "..." for the values, and the jobs that it holds up.
struct JobCause {
  std::string text;
  JobKeys jobs;
};

/// Groups the reasons (`Fehlertext`) of jobs by the rules that gave them.
class JobCauses {
public:
  void add(const std::string& jobId, std::string_view reasons);
  /// The most frequent first.
  std::vector<JobCause> sorted() const;

private:
  const std::string& causeOf(const std::string& line);

  std::map<std::string, std::string>
      known_;                           ///< by line without quoted values; empty for a line that is no cause
  std::map<std::string, JobKeys> jobs_; ///< by cause
};

} // namespace qx
