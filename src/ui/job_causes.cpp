#include "ui/job_causes.h"

#include "engine/findings.h"
#include "model/text.h"

#include <algorithm>

namespace qx {
namespace {

/// Lines that differ in quoted values alone have the same cause.
std::string withoutQuoted(std::string_view line) {
  std::string text;
  while (!line.empty()) {
    const std::size_t begin = std::min(line.find('\''), line.size());
    text += line.substr(0, begin);
    line.remove_prefix(begin);
    if (line.empty()) break;
    const std::size_t end = std::min(line.find('\'', 1), line.size() - 1);
    text += "'...'";
    line.remove_prefix(end + 1);
  }
  return text;
}

/// A line of a reason that no rule says is a cause of its own.
std::string causeSaying(const std::string& line) {
  if (line == findingsSentence) return {};
  for (const RuleTerms& row : allTerms()) {
    if (!says(row, line)) continue;
    std::string_view pattern = row.run.empty() ? row.dialog.text : row.run;
    return withoutValues(row, takeLine(pattern));
  }
  return withoutQuoted(line);
}

/// The further lines of a rule's text explain the first one.
bool explains(std::string_view line) {
  return std::ranges::any_of(allTerms(), [line](const RuleTerms& row) {
    std::string_view rest = row.run;
    takeLine(rest);
    return !rest.empty() && rest == line;
  });
}

} // namespace

const std::string& JobCauses::causeOf(const std::string& line) {
  const auto [known, isNew] = known_.try_emplace(withoutQuoted(line));
  if (isNew && !explains(line)) known->second = causeSaying(line);
  return known->second;
}

void JobCauses::add(const std::string& jobId, std::string_view reasons) {
  while (!reasons.empty()) {
    const std::string line(trimBlanks(takeLine(reasons)));
    if (line.empty()) continue;
    if (const std::string& cause = causeOf(line); !cause.empty()) jobs_[cause].insert(jobId);
  }
}

std::vector<JobCause> JobCauses::sorted() const {
  std::vector<JobCause> causes;
  causes.reserve(jobs_.size());
  for (const auto& [text, jobs] : jobs_) causes.push_back({text, jobs});
  std::ranges::stable_sort(
      causes, [](const JobCause& a, const JobCause& b) { return a.jobs.size() > b.jobs.size(); });
  return causes;
}

} // namespace qx
