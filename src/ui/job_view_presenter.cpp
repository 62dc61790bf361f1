#include "ui/job_view_presenter.h"

#include "engine/day_protocol.h"
#include "model/text.h"
#include "ui/dialog_context.h"
#include "ui/job_results.h"
#include "ui/job_view_busy.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <filesystem>
#include <iterator>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view mailLabel = "Bestellungen werden eingelesen...";

constexpr std::chrono::milliseconds checkInterval{50}; ///< between two looks at the message loop

/// Whether a run that returned false began at all.
bool endedEarly(const RunReport& run) { return run.end == RunEnd::Broken || run.end == RunEnd::Refused; }

/// Appends a line unless it is already present.
void addLine(std::vector<std::string>& lines, std::string_view line) {
  line = trimBlanks(line);
  if (!line.empty() && std::ranges::find(lines, line) == lines.end()) lines.emplace_back(line);
}

/// Appends the lines of a text that are not already present.
void addLines(std::vector<std::string>& lines, std::string_view text) {
  while (!text.empty()) addLine(lines, takeLine(text));
}

} // namespace

JobViewPresenter::JobViewPresenter(Environment& environment, ImportJobObject2& engine, JobViewHost& windows)
    : environment_(environment), engine_(engine), windows_(windows), settings_(environment),
      subscription_(engine.subscribe(*this)) {
  compose();
}

// Both events may come while a unit of work is open: their values are stored, the window draws later.
void JobViewPresenter::ProcessProgress(std::int16_t percent) {
  state_.progress = std::clamp<int>(percent, 0, 100);
  windows_.redraw();
}

void JobViewPresenter::ProcessInfo(std::string_view info) {
  if (work_ == Work::Run && !stopAsked_) state_.label = info;
  // The clerk may have asked to stop before the run had begun.
  if (stopAsked_) engine_.requestStop();
  windows_.redraw();
}

void JobViewPresenter::create() {
  state_.customerSpecific = settings_[option::customerSpecific];
  verify();
  refresh();
  // Clears Process/OnProcess; a run sets ImportJob2/OnProcess. They differ on purpose; do not merge them.
  settings_.save(option::processMark, "0");
  // The view holds the lock: a run still marked as under way has died.
  if (settings_[option::runUnderWay]) settings_.save(option::runUnderWay, "0");
  compose();
}

StoredGeometry JobViewPresenter::storedGeometry() const {
  StoredGeometry geometry;
  if (settings_[option::keepSize]) {
    const auto width = settings_[option::mainWidth];
    const auto height = settings_[option::mainHeight];
    if (width >= 1 && height >= 1) geometry.size = {*width, *height};
  }
  if (settings_[option::keepPosition]) {
    const auto state = settings_[option::mainState];
    if (state >= 0 && state <= 2) geometry.state = static_cast<WindowState>(*state);
    geometry.left = settings_[option::mainLeft];
    geometry.top = settings_[option::mainTop];
  }
  return geometry;
}

void JobViewPresenter::load() {
  if (!settings_[option::confirmed]) {
    options();
    refresh();
  } else {
    readPermissions();
  }
  if (const std::string file = engine_.takeFilename(); !file.empty()) importFile(file);
  compose();
}

bool JobViewPresenter::close(const WindowGeometry& geometry) {
  if (closed_) return true;
  if (work_ != Work::None) {
    closeAsked_ = true;
    stop();
    return false;
  }
  // A window whose database is gone can be closed all the same.
  if (!state_.databaseGone && !databaseIsFree() && !state_.databaseGone) return false;
  const auto keep = [this](const WholeOption& option, int number) {
    settings_.save(option, std::to_string(number));
  };
  keep(option::mainWidth, geometry.width);
  keep(option::mainHeight, geometry.height);
  keep(option::mainState, static_cast<int>(geometry.state));
  keep(option::mainLeft, geometry.left);
  keep(option::mainTop, geometry.top);
  closed_ = true;
  engine_.ViewFormLoad = qxtViewJobForm_Unload;
  engine_.Unload();
  return true;
}

void JobViewPresenter::command(Tool tool) {
  using P = JobViewPresenter;
  using enum qxProcessState;
  struct Command {
    Tool tool;
    void (JobViewPresenter::*run)();
  };
  static constexpr std::array commands{
      Command{Tool::ProcessTransactions, &P::processOnly<ProcessAll>},
      Command{Tool::Kunden, &P::processOnly<ProcessKunden>},
      Command{Tool::Verträge, &P::processOnly<ProcessVerträge>},
      Command{Tool::KundenVerträge, &P::processCustomersThenContracts},
      Command{Tool::Aufträge, &P::processOnly<ProcessAufträge>},
      Command{Tool::Zubehör, &P::processOnly<ProcessZubehör>},
      Command{Tool::EinzelnVerarbeiten, nullptr},
      Command{Tool::StopProcessing, &P::stop},
      Command{Tool::OpenJob, &P::openCurrent},
      Command{Tool::Delete, &P::erase},
      Command{Tool::DeleteViewDone, &P::purge},
      Command{Tool::DeleteDate, &P::purgeByDate},
      Command{Tool::UpdateDisplay, &P::checkWaiting},
      Command{Tool::Release, &P::release},
      Command{Tool::TakeBack, &P::takeBack},
      Command{Tool::DayProtocol, &P::showProtocol},
      Command{Tool::ImportProcessTransactions, &P::importChosen},
      Command{Tool::Export, &P::exportChosen},
      Command{Tool::ExportMarked, &P::exportMarked},
      Command{Tool::ViewWaiting, &P::toggle<&JobListFilter::waiting>},
      Command{Tool::ViewWarnings, &P::toggle<&JobListFilter::warnings>},
      Command{Tool::ViewError, &P::toggle<&JobListFilter::errors>},
      Command{Tool::ViewDone, &P::toggle<&JobListFilter::done>},
      Command{Tool::Options, &P::options},
      Command{Tool::About, &P::about},
      Command{Tool::End, &P::end},
  };
  static_assert([] {
    for (std::size_t i = 0; i < toolCount; ++i)
      if (indexOf(commands[i].tool) != i) return false;
    return commands.size() == toolCount;
  }());
  const auto run = commands[indexOf(tool)].run;
  const bool mayRun = tool == Tool::StopProcessing || (work_ == Work::None && state_.tool(tool).enabled);
  if (mayRun && run != nullptr) (this->*run)();
}

void JobViewPresenter::key(JobViewKey key) {
  if (!state_.listEnabled) return;
  switch (key) {
  case JobViewKey::Enter:
    openCurrent();
    break;
  case JobViewKey::F2:
    command(Tool::About);
    break;
  case JobViewKey::F5:
    refreshAndShow();
    break;
  case JobViewKey::F9:
    command(Tool::ProcessTransactions);
    break;
  case JobViewKey::Delete:
    // The permission only removes the tool.
    erase();
    break;
  case JobViewKey::F1:
    break;
  }
}

void JobViewPresenter::headClick(std::size_t column) {
  if (!state_.listEnabled || column >= jobColumnCount) return;
  const bool descending = std::exchange(descendingNext_[column], !descendingNext_[column]);
  const auto clicked = static_cast<JobColumn>(column);
  if (const auto key = columnSpec(clicked).sortedBy) {
    order_ = {*key, descending};
    state_.sortColumn = clicked;
    state_.sortDescending = descending;
  }
  refreshAndShow();
  windows_.showCurrent();
}

void JobViewPresenter::timerTick() {
  // Without a database every tick would try to connect.
  if (work_ != Work::None || closed_ || state_.databaseGone) return;
  mailComesIn_ = settings_[option::orderBeingReadIn];
  state_.label = mailComesIn_ ? mailLabel : std::string_view();
  compose();
}

void JobViewPresenter::select(std::optional<std::size_t> row) {
  if (row && *row >= state_.rows.size()) row.reset();
  if (state_.current == row) return;
  state_.current = row;
  compose();
}

void JobViewPresenter::open(std::size_t row) {
  if (!state_.listEnabled || row >= state_.rows.size()) return;
  select(row);
  openCurrent();
}

void JobViewPresenter::mark(std::vector<std::size_t> rows) {
  std::erase_if(rows, [this](std::size_t row) { return row >= state_.rows.size(); });
  std::ranges::sort(rows);
  if (state_.marked == rows) return;
  state_.marked = std::move(rows);
  compose();
}

std::vector<std::string> JobViewPresenter::detailsOf(const std::string& job) {
  std::vector<std::string> lines;
  Findings findings;
  if (!skip("Fehlertext", [&] { addLines(lines, readJobReasons(activeConnection(environment_), job)); }))
    lines.emplace_back("Der Vorgang konnte nicht gelesen werden.");
  else if (!skip("checkJob", [&] { findings = engine_.checkJob(job); }))
    lines.emplace_back("Der Vorgang konnte nicht geprüft werden.");
  for (const Finding& finding : findings)
    if (!finding.isHint()) addLine(lines, runLine(finding));
  if (state_.rows[*state_.current].released)
    lines.emplace(lines.begin(), "Freigegeben: Die nächste Verarbeitung übernimmt den Vorgang, wie er ist.");
  if (lines.empty())
    lines.emplace_back(stateOf(state_.rows[*state_.current].jobType) == JobState::Done
                           ? "Der Vorgang ist erledigt."
                           : "Die Prüfung hat nichts zu beanstanden.");
  for (const Finding& finding : findings)
    if (finding.isHint()) addLine(lines, hintLine(finding));
  return lines;
}

void JobViewPresenter::readDetails() {
  if (work_ != Work::None) return;
  std::vector<std::string> lines;
  if (const auto job = currentJob()) lines = detailsOf(*job);
  state_.details.clear();
  for (const std::string& line : lines) state_.details += (state_.details.empty() ? "" : "\n") + line;
  windows_.redraw();
}

/// Waits for a writing program, with a notice and a way to cancel. False when the clerk cancelled.
bool JobViewPresenter::databaseIsFree() {
  if (!isConnected(environment_)) {
    state_.databaseGone = true;
    compose();
    return false;
  }
  const auto wait = windows_.databaseWait();
  return awaitDatabase(environment_, wait.get());
}

void JobViewPresenter::verify() {
  bool unchecked = false;
  bool nothing = false;
  engine_.VerifyProcesses(unchecked, nothing);
}

void JobViewPresenter::refresh() {
  const bool read = isConnected(environment_) && skip("job list", [this] {
                      Connection& connection = activeConnection(environment_);
                      // An open handle would continue reading a deleted file.
                      const auto files = connection.files();
                      if (!files.empty() && !std::filesystem::exists(files.front()))
                        throw StoreError("Die Datenbankdatei wurde entfernt.", 0);
                      found_ = readJobList(connection, filter_, order_);
                      state_.counts = countJobs(connection);
                      released_ = readReleasedJobs(connection);
                      state_.released = released_.counts;
                      causesStale_ = true;
                    });
  state_.databaseGone = !read;
  if (read) listRows();
}

void JobViewPresenter::refreshAndShow() {
  refresh();
  compose();
}

void JobViewPresenter::verifyAndRefresh() {
  if (!isConnected(environment_)) {
    state_.databaseGone = true;
    return;
  }
  verify();
  refresh();
}

void JobViewPresenter::verifyAndShow() {
  verifyAndRefresh();
  compose();
}

/// Checks the waiting jobs one by one, which changes none of them.
void JobViewPresenter::checkWaiting() {
  if (!isConnected(environment_)) {
    state_.databaseGone = true;
    return compose();
  }
  bool unchecked = false;
  bool nothing = false;
  engine_.VerifyProcesses(unchecked, nothing);
  std::vector<std::string> waiting;
  std::size_t checked = 0;
  std::size_t withFindings = 0;
  {
    const Busy busy(*this, Work::Check, "Die wartenden Vorgänge werden geprüft...");
    refresh();
    skip("waiting jobs", [&] { waiting = waitingJobs(activeConnection(environment_)); });
    for (const std::string& job : waiting) {
      if (!mayGoOn(checked, waiting.size())) break;
      Findings findings;
      if (!skip("checkJob", [&] { findings = engine_.checkJob(job); })) continue;
      ++checked;
      if (findings.status() != CheckStatus::Clean) ++withFindings;
    }
  }
  state_.result =
      nothing ? "Es gibt nichts zu verarbeiten." : checkResult(checked, withFindings, state_.counts.waiting);
  compose();
  if (closeAsked_) windows_.closeWindow();
}

/// Shows how far a check has come, now and then. False when the clerk has stopped it.
bool JobViewPresenter::mayGoOn(std::size_t done, std::size_t all) {
  if (stopAsked_) return false;
  const auto now = std::chrono::steady_clock::now();
  if (now - shownAt_ >= checkInterval) {
    shownAt_ = now;
    state_.progress = static_cast<int>(done * 100 / std::max<std::size_t>(all, 1));
    windows_.redraw();
    skip("yield", [this] { environment_.desktop.yield(); });
  }
  return !stopAsked_;
}

void JobViewPresenter::readPermissions() {
  // An unreadable permission keeps its value.
  mayDelete_ = settings_[option::mayDelete].value_or(mayDelete_);
  mayChange_ = settings_[option::mayChange].value_or(mayChange_);
}

void JobViewPresenter::openCurrent() {
  while (state_.current && canBeOpened(state_.rows[*state_.current])) {
    const std::size_t row = *state_.current;
    const std::string jobId = state_.rows[row].jobId;
    // The saved job may move: the next one is the one that followed it before.
    std::vector<std::string> before;
    std::vector<std::string> after;
    for (std::size_t i = 0; i < state_.rows.size(); ++i)
      if (i != row && canBeOpened(state_.rows[i])) (i < row ? before : after).push_back(state_.rows[i].jobId);
    const JobPlace place{before.size() + 1, before.size() + 1 + after.size()};
    DialogEnd end = DialogEnd::Closed;
    skip("job dialog", [&] { end = windows_.openJob(jobId, place); });
    verifyAndShow();
    if (end == DialogEnd::Closed) return;
    std::ranges::reverse(before);
    const auto& wanted = end == DialogEnd::Next ? after : before;
    const auto rowOf = [this](const std::string& key) {
      return std::ranges::find(state_.rows, key, &JobListRow::jobId);
    };
    const auto key = std::ranges::find_if(
        wanted, [&](const std::string& each) { return rowOf(each) != state_.rows.end(); });
    if (key == wanted.end()) return;
    state_.current = static_cast<std::size_t>(rowOf(*key) - state_.rows.begin());
    compose();
  }
}

void JobViewPresenter::showProtocol() {
  const Date day = engine_.NowEx();
  std::string text;
  if (!skip("protocol", [&] { text = dayProtocolText(activeConnection(environment_), day); })) return;
  if (text.empty()) text = "Heute wurde noch nichts verarbeitet.";
  skip("protocol", [&] { windows_.report("Protokoll vom " + germanDate(day), text); });
}

RunReport JobViewPresenter::process(qxProcessState selection) {
  RunReport none;
  none.end = RunEnd::Refused;
  if (!databaseIsFree()) return none;
  settings_.save(option::runUnderWay, "1");
  bool performed = false;
  {
    Busy busy(*this, Work::Run, "Daten werden verarbeitet...");
    performed = engine_.ProcessJobs(false, selection);
    busy.closeRun();
    busy.say("Daten werden aktuallisiert...");
    verifyAndRefresh();
  }
  if (!state_.databaseGone) databaseIsFree();
  settings_.save(option::runUnderWay, "0");
  RunReport run = performed || endedEarly(engine_.lastRun()) ? engine_.lastRun() : none;
  tellJobsLeft();
  if (closeAsked_) windows_.closeWindow();
  return run;
}

void JobViewPresenter::showRun(const RunReport& run) {
  state_.result = runResult(run, state_.counts.waiting);
  compose();
}

/// The list does not show why such a job is still waiting.
void JobViewPresenter::tellJobsLeft() {
  std::string text;
  for (const auto& [jobId, reason] : engine_.lastRun().left) {
    text +=
        text.empty() ? "Die Datenbank lehnt es ab, diese Vorgänge zu ändern. Sie stehen noch wie zuvor:" : "";
    text.append("\r\n").append(jobId).append(": ").append(oneLine(reason));
  }
  if (!text.empty())
    skip("jobs left", [&] { windows_.report("Vorgänge, die nicht geändert werden konnten", text); });
}

void JobViewPresenter::processCustomersThenContracts() {
  RunReport both = process(qxProcessState::ProcessKunden);
  // A clerk who stopped the first run or is closing the window does not want the second one.
  if (!stopAsked_ && !closeAsked_ && both.end == RunEnd::Completed) {
    const RunReport contracts = process(qxProcessState::ProcessVerträge);
    both.end = contracts.end;
    both.done += contracts.done;
    both.warning += contracts.warning;
    both.error += contracts.error;
    both.protocolErrors += contracts.protocolErrors;
  }
  showRun(both);
}

void JobViewPresenter::stop() {
  if (!mayBeStopped() || stopAsked_) return;
  stopAsked_ = true;
  if (work_ == Work::Run) {
    engine_.requestStop();
    state_.label = "Die Verarbeitung hält nach dem aktuellen Vorgang an...";
  }
  compose();
}

/// The options decide what the clerk may do.
void JobViewPresenter::options() {
  skip("Options", [this] { windows_.options(); });
  readPermissions();
  compose();
}

void JobViewPresenter::about() {
  skip("About", [this] { windows_.about(); });
}

template <bool JobListFilter::*State>
void JobViewPresenter::toggle() {
  filter_.*State = !(filter_.*State);
  refreshAndShow();
}

std::optional<std::string> JobViewPresenter::currentJob() const {
  if (!state_.current || state_.rows[*state_.current].jobId.empty()) return std::nullopt;
  return state_.rows[*state_.current].jobId;
}

} // namespace qx
