#include "ui/job_view_presenter.h"

#include "model/text.h"
#include "platform/failure.h"
#include "store/job_file_import.h"
#include "ui/dialog_context.h"
#include "ui/import_report.h"

#include <algorithm>
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

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  const std::string all = lowerCase(text);
  for (std::size_t at = all.find_first_not_of(' '); at != std::string::npos;) {
    const std::size_t end = std::min(all.find(' ', at), all.size());
    words.push_back(all.substr(at, end - at));
    at = all.find_first_not_of(' ', end);
  }
  return words;
}

bool matches(const JobListRow& row, const std::vector<std::string>& words) {
  if (words.empty()) return true;
  const std::string searched = lowerCase(row.name + '\n' + row.customer + '\n' + row.subject);
  return std::ranges::all_of(
      words, [&](const std::string& word) { return searched.find(word) != std::string::npos; });
}

/// Whether there is a dialog for the code.
bool canBeOpened(const JobListRow& row) { return !statePicture(row.jobType).empty(); }

std::string jobsInWords(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " Vorgang" : " Vorgänge");
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
    if (work == Work::Run) view_.state_.progress = 0;
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
      Command{Tool::Delete, &P::eraseCurrent},
      Command{Tool::DeleteViewDone, &P::purge},
      Command{Tool::DeleteDate, &P::purgeByDate},
      Command{Tool::UpdateDisplay, &P::verifyAndShow},
      Command{Tool::ImportProcessTransactions, &P::importChosen},
      Command{Tool::Export, &P::exportChosen},
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
    eraseCurrent();
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

void JobViewPresenter::search(std::string_view text) {
  searched_ = text;
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

void JobViewPresenter::listRows() {
  const auto current = currentJob();
  const auto words = wordsOf(searched_);
  const auto wanted = [&words](const JobListRow& row) { return matches(row, words); };
  state_.rows.clear();
  // A match may be beyond the listed jobs.
  const bool sought = beyondLimit() && !words.empty() && skip("search", [&] {
                        state_.rows = findJobs(activeConnection(environment_), filter_, order_, wanted);
                      });
  if (!sought) std::ranges::copy_if(found_, std::back_inserter(state_.rows), wanted);
  ++state_.listing;
  keepCurrent(current, state_.current);
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
    std::vector<std::string> following;
    for (std::size_t i = row + 1; i < state_.rows.size(); ++i)
      if (canBeOpened(state_.rows[i])) following.push_back(state_.rows[i].jobId);
    bool next = false;
    skip("job dialog", [&] { next = windows_.openJob(jobId, !following.empty()) && !following.empty(); });
    verifyAndShow();
    if (!next) return;
    // The saved job may have moved: the next one is the one that followed it before.
    state_.current.reset();
    for (const std::string& jobId : following) {
      const auto found = std::ranges::find(state_.rows, jobId, &JobListRow::jobId);
      if (found == state_.rows.end()) continue;
      state_.current = static_cast<std::size_t>(found - state_.rows.begin());
      break;
    }
    compose();
  }
}

void JobViewPresenter::eraseCurrent() {
  const auto job = currentJob();
  if (!job) return;
  // Shows the job that the question is about.
  windows_.showCurrent();
  skip("delete", [&] {
    if (!environment_.desktop.ask(
            {"Wollen Sie diesen Importvorgang wirklich löschen?", "Wirklich löschen?", MessageIcon::None}))
      return;
    if (!databaseIsFree()) return;
    engine_.DelItem(*job, true);
    refreshAndShow();
  });
}

void JobViewPresenter::process(qxProcessState selection) {
  if (!databaseIsFree()) return;
  settings_.save(option::runUnderWay, "1");
  {
    Busy busy(*this, Work::Run, "Daten werden verarbeitet...");
    engine_.ProcessJobs(false, selection);
    busy.closeRun();
    busy.say("Daten werden aktuallisiert...");
    verifyAndRefresh();
  }
  if (!state_.databaseGone) databaseIsFree();
  settings_.save(option::runUnderWay, "0");
  tellJobsLeft();
  if (closeAsked_) windows_.closeWindow();
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
  process(qxProcessState::ProcessKunden);
  // A clerk who stopped the first run or is closing the window does not want the second one.
  if (stopAsked_ || closeAsked_ || engine_.lastRun().end == RunEnd::Stopped) return;
  process(qxProcessState::ProcessVerträge);
}

void JobViewPresenter::stop() {
  if (work_ != Work::Run || stopAsked_) return;
  stopAsked_ = true;
  engine_.requestStop();
  state_.label = "Die Verarbeitung hält nach dem aktuellen Vorgang an...";
  compose();
}

void JobViewPresenter::purge() {
  if (!databaseIsFree()) return;
  {
    const Busy busy(*this, Work::Files, "Erledigte Vorgänge werden gelöscht...");
    engine_.DelArchives();
    refresh();
  }
  if (closeAsked_) windows_.closeWindow();
}

void JobViewPresenter::purgeByDate() {
  skip("DeleteDate", [this] { windows_.deleteDate(); });
  refreshAndShow();
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
  return read.text(file, report);
}

void JobViewPresenter::exportChosen() {
  std::optional<std::string> file;
  skip("file choice",
       [&] { file = environment_.desktop.chooseFile("Vorgänge ausgeben", fileFilter, FileUse::Writing); });
  if (!file || file->empty()) return;
  {
    const Busy busy(*this, Work::Files, "Die Datei wird geschrieben...");
    engine_.Export(*file);
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
  tool(Tool::StopProcessing).enabled = work_ == Work::Run && !stopAsked_;
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
  tool(Tool::OpenJob).enabled = atJob && canBeOpened(state_.rows[*state_.current]);
}

void JobViewPresenter::composeTexts() {
  state_.notice.clear();
  if (state_.databaseGone)
    state_.notice = goneNotice;
  else if (beyondLimit() && state_.rows.size() == jobListLimit)
    state_.notice = limitNotice;

  const bool searching = !wordsOf(searched_).empty();
  const std::size_t all =
      searching && beyondLimit() ? static_cast<std::size_t>(matchingJobs()) : found_.size();
  state_.countText = state_.rows.size() == all ? jobsInWords(all)
                                               : std::to_string(state_.rows.size()) + " von " +
                                                     jobsInWords(all) + (all == 1 ? "" : "n");

  state_.emptyHint.clear();
  if (!state_.rows.empty()) return;
  if (!found_.empty())
    state_.emptyHint = "Kein Vorgang passt zu der Suche\nLeeren Sie das Suchfeld, um alle zu sehen.";
  else if (filter_ == JobListFilter{false, false, false, false})
    state_.emptyHint = "Es ist kein Zustand gewählt\nSchalten Sie oben einen Zustand ein.";
  else
    state_.emptyHint = "Keine Vorgänge mit diesem Zustand\nSchalten Sie oben einen weiteren Zustand ein oder "
                       "lesen Sie eine Datei ein.";
}

} // namespace qx
