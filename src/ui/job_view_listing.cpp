// Which jobs the job view lists: those of the filter, of a search and of a cause.
#include "ui/job_view_presenter.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qx {
namespace {

constexpr JobListFilter allStates{true, true, true, true};

std::int64_t& countOf(JobCounts& counts, JobState state) {
  if (state == JobState::Waiting) return counts.waiting;
  if (state == JobState::Warning) return counts.warnings;
  return state == JobState::Error ? counts.errors : counts.done;
}

} // namespace

void JobViewPresenter::search(std::string_view text) {
  search_ = JobSearch(text);
  listRows();
  compose();
}

void JobViewPresenter::readCauses() {
  if (work_ != Work::None || !causesStale_ || state_.databaseGone) return;
  causesStale_ = false;
  const std::string shown = state_.cause ? state_.causes[*state_.cause].text : std::string();
  JobCauses causes;
  skip("causes", [&] {
    forEachReason(activeConnection(environment_), filter_,
                  [&](const std::string& jobId, const std::string& reasons) { causes.add(jobId, reasons); });
  });
  const bool narrowed = state_.cause.has_value();
  state_.causes = causes.sorted();
  state_.cause.reset();
  const auto same = std::ranges::find(state_.causes, shown, &JobCause::text);
  if (narrowed && same != state_.causes.end())
    state_.cause = static_cast<std::size_t>(same - state_.causes.begin());
  if (narrowed) listRows();
  compose();
}

void JobViewPresenter::showCause(std::optional<std::size_t> cause) {
  if (work_ != Work::None || (cause && *cause >= state_.causes.size()) || state_.cause == cause) return;
  state_.cause = cause;
  listRows();
  compose();
}

void JobViewPresenter::listRows() {
  const auto current = currentJob();
  const auto marked = keysOf(state_.marked);
  const auto place = std::exchange(state_.current, std::nullopt);
  state_.marked.clear();
  const JobKeys* const among = state_.cause ? &state_.causes[*state_.cause].jobs : nullptr;
  state_.rows.clear();
  elsewhere_ = {};
  // A match may be beyond the listed jobs.
  const bool sought = beyondLimit() && isNarrowed() && skip("search", [&] {
                        state_.rows =
                            findJobs(activeConnection(environment_), filter_, order_, search_, among);
                      });
  if (!sought)
    std::ranges::copy_if(found_, std::back_inserter(state_.rows), [&](const JobListRow& row) {
      return search_.matches(row) && (among == nullptr || among->contains(row.jobId));
    });
  for (JobListRow& row : state_.rows) row.released = released_.keys.contains(row.jobId);
  // The job that is looked for may have a state that is not shown.
  if (state_.rows.empty() && !search_.empty() && !state_.databaseGone)
    skip("search", [&] {
      for (const JobListRow& row : findJobs(activeConnection(environment_), allStates, order_, search_))
        ++countOf(elsewhere_, stateOf(row.jobType));
    });
  ++state_.listing;
  keepCurrent(current, place);
  if (marked.size() < 2) return;
  const JobKeys kept(marked.begin(), marked.end());
  for (std::size_t row = 0; row < state_.rows.size(); ++row)
    if (kept.contains(state_.rows[row].jobId)) state_.marked.push_back(row);
}

/// The same job or, when it is no longer listed, the one at its index.
void JobViewPresenter::keepCurrent(const std::optional<std::string>& jobId, std::optional<std::size_t> row) {
  state_.current.reset();
  if (state_.rows.empty()) return;
  state_.current = std::min(row.value_or(0), state_.rows.size() - 1);
  const auto same = std::ranges::find(state_.rows, jobId.value_or(""), &JobListRow::jobId);
  if (jobId && same != state_.rows.end())
    state_.current = static_cast<std::size_t>(same - state_.rows.begin());
}

std::int64_t JobViewPresenter::matchingJobs() const {
  return (filter_.waiting ? state_.counts.waiting : 0) + (filter_.warnings ? state_.counts.warnings : 0) +
         (filter_.errors ? state_.counts.errors : 0) + (filter_.done ? state_.counts.done : 0);
}

/// Whether the list query left jobs out.
bool JobViewPresenter::beyondLimit() const {
  return found_.size() == jobListLimit && matchingJobs() > static_cast<std::int64_t>(jobListLimit);
}

} // namespace qx
