// What the job view offers and says, made from its state.
#include "ui/job_view_presenter.h"

#include "ui/counted.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

constexpr std::string_view goneNotice =
    "Die Datenbank ist nicht erreichbar. Die Liste zeigt den letzten Stand; F5 liest sie neu.";
constexpr std::string_view limitNotice = "Es werden die ersten 2000 Vorgänge angezeigt.";

} // namespace

void JobViewPresenter::compose() {
  state_.listEnabled = work_ == Work::None && !mailComesIn_;
  composeTools();
  composeTexts();
  windows_.redraw();
}

void JobViewPresenter::composeTools() {
  state_.tools.fill({.enabled = work_ == Work::None});
  const auto tool = [this](Tool which) -> ToolState& { return state_.tools[indexOf(which)]; };
  tool(Tool::StopProcessing).enabled = mayBeStopped() && !stopAsked_;
  tool(Tool::ViewWaiting).checked = filter_.waiting;
  tool(Tool::ViewDone).checked = filter_.done;
  tool(Tool::ViewWarnings).checked = filter_.warnings;
  tool(Tool::ViewError).checked = filter_.errors;
  tool(Tool::EinzelnVerarbeiten).visible = state_.customerSpecific;
  tool(Tool::Delete).visible = mayDelete_;
  if (work_ != Work::None) return;
  tool(Tool::ProcessTransactions).enabled = !mailComesIn_;
  tool(Tool::UpdateDisplay).enabled = !mailComesIn_;
  const bool atJob = state_.listEnabled && state_.current.has_value();
  tool(Tool::Delete).enabled = atJob;
  tool(Tool::ExportMarked).enabled = atJob;
  const auto rows = atJob ? targets() : std::vector<std::size_t>();
  const auto anyParked = [&](bool released) {
    return std::ranges::any_of(rows, [&](std::size_t row) {
      return isParked(state_.rows[row].jobType) && state_.rows[row].released == released;
    });
  };
  tool(Tool::Release).enabled = anyParked(false);
  tool(Tool::TakeBack).enabled = anyParked(true);
  tool(Tool::OpenJob).enabled = atJob && canBeOpened(state_.rows[*state_.current]);
}

void JobViewPresenter::composeTexts() {
  state_.notice.clear();
  if (state_.databaseGone)
    state_.notice = goneNotice;
  else if (beyondLimit() && state_.rows.size() == jobListLimit)
    state_.notice = limitNotice;

  const std::size_t all = beyondLimit() ? static_cast<std::size_t>(matchingJobs()) : found_.size();
  const std::size_t shown = state_.rows.size();
  if (shown == all)
    state_.countText = jobsInWords(all);
  else
    state_.countText = grouped(whole(shown)) + (isNarrowed() ? " unter " : " von ") + jobsInWords(all) +
                       (all == 1 ? "" : "n");
  if (state_.marked.size() > 1)
    state_.countText = grouped(whole(state_.marked.size())) + " markiert, " + state_.countText;
  composeHint();
}

void JobViewPresenter::composeHint() {
  state_.emptyHint.clear();
  if (!state_.rows.empty()) return;
  if (!search_.empty())
    state_.emptyHint = searchHint();
  else if (filter_ == JobListFilter{false, false, false, false})
    state_.emptyHint = "Es ist kein Zustand gewählt\nSchalten Sie oben einen Zustand ein.";
  else
    state_.emptyHint = "Keine Vorgänge mit diesem Zustand\nSchalten Sie oben einen weiteren Zustand ein oder "
                       "lesen Sie eine Datei ein.";
}

/// Why a search lists nothing. Matches of a state that is not shown, or of another cause, are named.
std::string JobViewPresenter::searchHint() const {
  constexpr std::string_view advice = "\nLeeren Sie das Suchfeld, um alle zu sehen.";
  struct State {
    std::int64_t JobCounts::*count;
    bool JobListFilter::*shown;
    Tool tool;
  };
  static constexpr std::array states{
      State{&JobCounts::waiting, &JobListFilter::waiting, Tool::ViewWaiting},
      State{&JobCounts::warnings, &JobListFilter::warnings, Tool::ViewWarnings},
      State{&JobCounts::errors, &JobListFilter::errors, Tool::ViewError},
      State{&JobCounts::done, &JobListFilter::done, Tool::ViewDone},
  };
  std::string hidden;
  std::int64_t all = 0;
  std::int64_t ofOtherCauses = 0;
  for (const State& each : states) {
    const std::int64_t matches = elsewhere_.*each.count;
    all += state_.counts.*each.count;
    if (filter_.*each.shown) ofOtherCauses += matches;
    if (matches == 0 || filter_.*each.shown) continue;
    std::string caption(toolSpec(each.tool).caption);
    std::erase(caption, '&');
    hidden += (hidden.empty() ? "" : ", ") + grouped(matches) + " unter " + caption;
  }
  if (ofOtherCauses > 0)
    return "Zu dieser Ursache passt kein Vorgang der Suche\n" +
           jobsInWords(static_cast<std::size_t>(ofOtherCauses)) +
           " mit anderen Ursachen: Wählen Sie sie rechts unten ab.";
  if (hidden.empty())
    return "Kein Vorgang passt zu der Suche unter allen " + jobsInWords(static_cast<std::size_t>(all)) +
           (all == 1 ? "" : "n") + std::string(advice);
  return "In den eingeschalteten Zuständen passt kein Vorgang zu der Suche\nEs passen " + hidden +
         ". Schalten Sie den Zustand oben ein.";
}

std::string filterText(const JobViewState& state, Tool filter) {
  const auto text = [&](std::int64_t JobCounts::*count) {
    std::string caption(toolSpec(filter).caption);
    std::erase(caption, '&');
    caption += " " + grouped(state.counts.*count);
    const std::int64_t released = state.released.*count;
    return released == 0 ? caption : caption + ", davon " + grouped(released) + " freigegeben";
  };
  if (filter == Tool::ViewWaiting) return text(&JobCounts::waiting);
  if (filter == Tool::ViewWarnings) return text(&JobCounts::warnings);
  return filter == Tool::ViewError ? text(&JobCounts::errors) : text(&JobCounts::done);
}

} // namespace qx
