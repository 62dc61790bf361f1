// Why the jobs of a run were not written, grouped.
#pragma once

#include "engine/job_outcome.h"
#include "store/json_writer.h"

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace qx::cli {

/// Counts the jobs by what was found against them: the code of a rule and the value that broke it.
class RunCauses {
public:
  void add(const JobOutcome& outcome);
  /// The most frequent ones below a line with the numbers; nothing without any.
  void print(std::ostream& output) const;
  /// The member `causes`.
  void write(JsonWriter& json) const;

private:
  using Cause = std::pair<std::string, std::string>;

  /// By frequency.
  std::vector<std::pair<Cause, std::size_t>> sorted() const;

  std::map<Cause, std::size_t> jobs_;
  std::size_t failed_ = 0;
};

} // namespace qx::cli
