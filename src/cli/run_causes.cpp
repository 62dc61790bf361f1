#include "cli/run_causes.h"

#include "model/job_codes.h"
#include "model/text.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>

namespace qx::cli {
namespace {

/// More values than these are not told apart: a run may have a million.
constexpr std::size_t mostCauses = 1000;
constexpr std::size_t longestValue = 60;

} // namespace

void RunCauses::add(const JobOutcome& outcome) {
  if (stateOf(outcome.jobType) == JobState::Done) return;
  ++failed_;
  std::set<Cause> ofJob;
  for (const Finding& finding : outcome.findings) {
    if (finding.isHint()) continue;
    Cause cause{terms(finding.rule).code, oneLine(firstCharacters(finding.value, longestValue))};
    if (jobs_.size() >= mostCauses && !jobs_.contains(cause)) cause.second.clear();
    ofJob.insert(std::move(cause));
  }
  for (const Cause& cause : ofJob) ++jobs_[cause];
}

std::vector<std::pair<RunCauses::Cause, std::size_t>> RunCauses::sorted() const {
  std::vector<std::pair<Cause, std::size_t>> causes(jobs_.begin(), jobs_.end());
  std::ranges::stable_sort(causes, std::greater<>(), &std::pair<Cause, std::size_t>::second);
  return causes;
}

void RunCauses::print(std::ostream& output) const {
  constexpr std::size_t mostShown = 10;
  if (jobs_.empty()) return;
  output << failed_ << " not written, " << jobs_.size() << (jobs_.size() == 1 ? " cause:\n" : " causes:\n");
  std::size_t shown = 0;
  for (const auto& [cause, jobs] : sorted()) {
    if (shown == mostShown) break;
    ++shown;
    output << "  " << jobs << " x " << cause.first;
    if (!cause.second.empty()) output << " '" << cause.second << "'";
    output << '\n';
  }
  if (shown < jobs_.size()) output << "  and " << jobs_.size() - shown << " more\n";
}

void RunCauses::write(JsonWriter& json) const {
  json.key("causes").beginArray();
  for (const auto& [cause, jobs] : sorted()) {
    json.beginObject().key("code").text(cause.first).key("value").text(cause.second);
    json.key("jobs").number(static_cast<std::int64_t>(jobs)).endObject();
  }
  json.endArray();
}

} // namespace qx::cli
