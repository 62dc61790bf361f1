#include "ui/job_view_presenter.h"

#include "engine/day_protocol.h"
#include "model/text.h"
#include "platform/failure.h"
#include "store/job_deletion.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"
#include "ui/counted.h"
#include "ui/dialog_context.h"
#include "ui/import_report.h"
#include "ui/job_results.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <filesystem>
#include <iterator>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view fileFilter = "EDI (*.edi)|*.edi";
constexpr std::string_view mailLabel = "Bestellungen werden eingelesen...";
constexpr std::string_view goneNotice =
    "Die Datenbank ist nicht erreichbar. Die Liste zeigt den letzten Stand; F5 liest sie neu.";
constexpr std::string_view limitNotice = "Es werden die ersten 2000 Vorgänge angezeigt.";

/// Whether there is a dialog for the code.
bool canBeOpened(const JobListRow& row) { return !statePicture(row.jobType).empty(); }

constexpr std::chrono::milliseconds checkInterval{50}; ///< between two looks at the message loop

std::string jobsInWords(std::size_t count) { return counted(whole(count), "Vorgang", "Vorgänge"); }

/// Whether a run that returned false began at all.
bool endedEarly(const RunReport& run) { return run.end == RunEnd::Broken || run.end == RunEnd::Refused; }

constexpr JobListFilter allStates{true, true, true, true};

std::int64_t& countOf(JobCounts& counts, JobState state) {
  if (state == JobState::Waiting) return counts.waiting;
  if (state == JobState::Warning) return counts.warnings;
  return state == JobState::Error ? counts.errors : counts.done;
}

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

/// Blocks every command and key while something is under way.
class JobViewPresenter::Busy {
public:
  Busy(JobViewPresenter& view, Work work, std::string_view label) : view_(view) {
    view_.work_ = work;
    view_.stopAsked_ = false;
    view_.state_.progressVisible = true;
    view_.state_.progress.reset();
    if (view_.mayBeStopped()) view_.state_.progress = 0;
    say(label);
  }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  ~Busy() {
    view_.state_.label.clear();
    view_.state_.progressVisible = false;
    view_.work_ = Work::None;
    view_.compose();
  }

  /// Shows a text at once.
  void say(std::string_view label) {
    view_.state_.label = label;
    view_.compose();
    view_.skip("yield", [this] { view_.environment_.desktop.yield(); });
  }
  /// From here on there is nothing left to stop.
  void closeRun() { view_.work_ = Work::Files; }

private:
  JobViewPresenter& view_;
};

JobViewPresenter::JobViewPresenter(Environment& environment, ImportJobObject2& engine, JobViewHost& windows)
    : environment_(environment), engine_(engine), windows_(windows), settings_(environment),
      subscription_(engine.subscribe(*this)) {
  compose();
}

template <class Step>
bool JobViewPresenter::skip(std::string_view where, Step&& step) {
  const std::string job = currentJob().value_or("");
  return !trapped(environment_.diagnostics, {where, job}, step);
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
      Command{Tool::Release, &P::setRelease<true>},
      Command{Tool::TakeBack, &P::setRelease<false>},
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
  std::vector<JobListRow> waiting;
  std::size_t checked = 0;
  std::size_t withFindings = 0;
  {
    const Busy busy(*this, Work::Check, "Die wartenden Vorgänge werden geprüft...");
    refresh();
    skip("waiting jobs", [&] {
      waiting = readJobList(activeConnection(environment_), {true, false, false, false}, order_);
    });
    for (const JobListRow& job : waiting) {
      if (!mayGoOn(checked, waiting.size())) break;
      Findings findings;
      if (stateOf(job.jobType) != JobState::Waiting || !canBeOpened(job)) continue;
      if (!skip("checkJob", [&] { findings = engine_.checkJob(job.jobId); })) continue;
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

std::vector<std::size_t> JobViewPresenter::targets() const {
  if (state_.marked.size() > 1) return state_.marked;
  if (!state_.current) return {};
  return {*state_.current};
}

std::vector<std::string> JobViewPresenter::keysOf(const std::vector<std::size_t>& rows) const {
  std::vector<std::string> keys;
  for (const std::size_t row : rows)
    if (!state_.rows[row].jobId.empty()) keys.push_back(state_.rows[row].jobId);
  return keys;
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

std::string JobViewPresenter::deletionQuestion(const std::vector<std::size_t>& rows) {
  const bool single = rows.size() == 1;
  std::string text =
      single ? "Wollen Sie diesen Importvorgang wirklich löschen?\r\n" + rowName(state_.rows[rows.front()])
             : "Wollen Sie diese " + grouped(whole(rows.size())) + " Importvorgänge wirklich löschen?";
  std::set<std::string> contracts;
  skip("contracts", [&] {
    for (const std::size_t row : rows)
      if (kindOf(state_.rows[row].jobType) == qxtjobkunden)
        contracts.merge([&] {
          const auto keys = contractsWithCustomer(activeConnection(environment_), state_.rows[row].customer);
          return std::set<std::string>(keys.begin(), keys.end());
        }());
  });
  if (contracts.empty()) return text;
  const bool one = contracts.size() == 1;
  return text + "\r\n" + (one ? "Dabei wird " : "Dabei werden ") +
         counted(whole(contracts.size()), "Vertrag", "Verträge") + (single ? " des Kunden" : " der Kunden") +
         " gelöscht.";
}

void JobViewPresenter::erase() {
  const auto rows = targets();
  const auto jobs = keysOf(rows);
  if (jobs.empty()) return;
  // Shows the job that the question is about.
  windows_.showCurrent();
  skip("delete", [&] {
    if (!environment_.desktop.ask({deletionQuestion(rows), "Wirklich löschen?", MessageIcon::None})) return;
    if (!databaseIsFree()) return;
    if (jobs.size() == 1) {
      engine_.DelItem(jobs.front(), true);
      return refreshAndShow();
    }
    std::string left;
    {
      const Busy busy(*this, Work::Files, "Die Vorgänge werden gelöscht...");
      JobDeletion deletion(environment_);
      trapped(
          environment_.diagnostics, {"delete"}, [&] { deletion.delItems(jobs, true); },
          [&](const std::exception& failure) { left = germanCause(failure); });
      if (left.empty()) left = deletion.germanLeft();
      state_.marked.clear();
      refresh();
      state_.result = counted(deletion.deletedHeaders(), "Vorgang", "Vorgänge") + " gelöscht";
    }
    if (!left.empty())
      environment_.desktop.show({.text = "Fehler beim Löschen: " + left, .icon = MessageIcon::Critical});
  });
  if (closeAsked_) windows_.closeWindow();
}

template <bool Released>
void JobViewPresenter::setRelease() {
  std::vector<std::string> jobs;
  const auto rows = targets();
  for (const std::size_t row : rows)
    if (isParked(state_.rows[row].jobType) && state_.rows[row].released != Released)
      jobs.push_back(state_.rows[row].jobId);
  if (jobs.empty()) return;
  windows_.showCurrent();
  const bool one = jobs.size() == 1;
  std::string question;
  if (one)
    question = Released ? "Soll die nächste Verarbeitung diesen Vorgang trotz seiner Befunde übernehmen?\r\n"
                        : "Soll die Freigabe dieses Vorgangs zurückgenommen werden?\r\n";
  else
    question = (Released ? "Soll die nächste Verarbeitung diese " : "Soll die Freigabe dieser ") +
               grouped(whole(jobs.size())) +
               (Released ? " Vorgänge trotz ihrer Befunde übernehmen?" : " Vorgänge zurückgenommen werden?");
  if (one) {
    const auto row = std::ranges::find(state_.rows, jobs.front(), &JobListRow::jobId);
    question += rowName(*row);
  }
  skip("release", [&] {
    if (!environment_.desktop.ask({question, std::string(Released ? "Freigeben" : "Freigabe zurücknehmen")}))
      return;
    if (!databaseIsFree()) return;
    const auto wait = windows_.databaseWait();
    const std::size_t changed = qx::setReleased(environment_, jobs, Released, wait.get());
    state_.result = jobsInWords(changed) + (Released ? " freigegeben" : " nicht mehr freigegeben");
    refreshAndShow();
  });
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

void JobViewPresenter::purge() {
  if (!databaseIsFree()) return;
  {
    const Busy busy(*this, Work::Files, "Erledigte Vorgänge werden gelöscht...");
    const std::int64_t before = state_.counts.done;
    engine_.DelArchives();
    refresh();
    state_.result =
        counted(before - state_.counts.done, "erledigter Vorgang", "erledigte Vorgänge") + " gelöscht";
  }
  if (closeAsked_) windows_.closeWindow();
}

void JobViewPresenter::purgeByDate() {
  const std::int64_t before = state_.counts.done;
  skip("DeleteDate", [this] { windows_.deleteDate(); });
  refresh();
  if (const std::int64_t deleted = before - state_.counts.done; deleted > 0)
    state_.result = counted(deleted, "erledigter Vorgang", "erledigte Vorgänge") + " gelöscht";
  compose();
}

void JobViewPresenter::importChosen() {
  std::optional<std::string> file;
  skip("file choice",
       [&] { file = environment_.desktop.chooseFile("Vorgänge einlesen", fileFilter, FileUse::Reading); });
  if (file && !file->empty()) importFile(*file);
}

void JobViewPresenter::importFile(std::string_view file) {
  std::string told;
  {
    const Busy busy(*this, Work::Files, "Die Datei wird eingelesen...");
    if (maySetBack(file) && databaseIsFree()) told = readFile(file);
    verifyAndRefresh();
  }
  if (!told.empty()) skip("import report", [&] { windows_.report("Vorgänge einlesen", told); });
  if (closeAsked_) windows_.closeWindow();
}

/// Done jobs that an import resets would be written to the ERP a second time: the clerk decides.
bool JobViewPresenter::maySetBack(std::string_view file) {
  ImportReport ahead;
  previewSetBacks(environment_, file, JobFileVersion::Two, ahead);
  if (!ahead.setsBack()) return true;
  bool wanted = false;
  skip("import question", [&] {
    wanted = environment_.desktop.ask({ahead.question(), "Vorgänge einlesen", MessageIcon::None});
  });
  return wanted;
}

/// Imports a job file; returns what the clerk has to know about it.
std::string JobViewPresenter::readFile(std::string_view file) {
  ImportReport read;
  const JobFileReport report = importJobFile(environment_, file, JobFileVersion::Two, &read);
  showImportResult(environment_, report);
  state_.result = importResult(file, report);
  return read.text(file, report);
}

void JobViewPresenter::exportChosen() { exportJobs(nullptr); }

void JobViewPresenter::exportMarked() {
  JobKeys keys;
  skip("contracts", [&] {
    for (const std::size_t row : targets()) {
      const JobListRow& job = state_.rows[row];
      keys.insert(job.jobId);
      if (kindOf(job.jobType) != qxtjobkunden) continue;
      for (std::string& contract : contractsWithCustomer(activeConnection(environment_), job.customer))
        keys.insert(std::move(contract));
    }
  });
  if (!keys.empty()) exportJobs(&keys);
}

void JobViewPresenter::exportJobs(const JobKeys* only) {
  std::optional<std::string> file;
  skip("file choice",
       [&] { file = environment_.desktop.chooseFile("Vorgänge ausgeben", fileFilter, FileUse::Writing); });
  if (!file || file->empty()) return;
  {
    const Busy busy(*this, Work::Files, "Die Datei wird geschrieben...");
    const JobFileReport report = exportJobFile(environment_, *file, JobFileVersion::Two, nullptr, only);
    showExportResult(environment_, report);
    state_.result = exportResult(*file, report);
  }
  if (closeAsked_) windows_.closeWindow();
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

std::int64_t JobViewPresenter::matchingJobs() const {
  return (filter_.waiting ? state_.counts.waiting : 0) + (filter_.warnings ? state_.counts.warnings : 0) +
         (filter_.errors ? state_.counts.errors : 0) + (filter_.done ? state_.counts.done : 0);
}

/// Whether the list query left jobs out.
bool JobViewPresenter::beyondLimit() const {
  return found_.size() == jobListLimit && matchingJobs() > static_cast<std::int64_t>(jobListLimit);
}

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
