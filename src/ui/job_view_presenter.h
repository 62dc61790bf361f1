// The job view without a toolkit: what the clerk's main window shows and does.
#pragma once

#include "engine/import_job_object2.h"
#include "platform/failure.h"
#include "store/parked_jobs.h"
#include "ui/deletion_question.h"
#include "ui/job_causes.h"
#include "ui/job_place.h"
#include "ui/job_view_terms.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// The window as seen by the presenter.
class JobViewHost {
public:
  virtual ~JobViewHost() = default;
  /// Opens the dialog of a job modally; `place` is where it stands in the list.
  virtual DialogEnd openJob(std::string_view jobId, const JobPlace& place) = 0;
  virtual void options() = 0;
  virtual void deleteDate() = 0;
  virtual void about() = 0;
  /// Shows a long text that can be searched, copied and printed.
  virtual void report(std::string_view title, std::string_view text) = 0;
  /// Scrolls to the current job at once.
  virtual void showCurrent() = 0;
  /// Called when the state has changed, possibly while a unit of work is open: the window draws when the
  /// message loop next runs, never at once.
  virtual void redraw() = 0;
  /// Creates the notice shown while another program holds the database; null for none.
  virtual std::unique_ptr<BusyWait> databaseWait() { return nullptr; }
  /// Asks before a deletion; null when the window leaves that to a yes-no question.
  virtual std::optional<DeletionAnswer> askDeletion(const Message& /*question*/) { return std::nullopt; }
  /// Closes the window as its close box does, once the message loop runs again.
  virtual void closeWindow() = 0;
};

struct ToolState {
  bool enabled = true;
  bool checked = false;
  bool visible = true;
};

/// The complete state of the window.
struct JobViewState {
  std::array<ToolState, toolCount> tools; ///< by `Tool`
  std::vector<JobListRow> rows;           ///< what is listed, after the search
  std::uint64_t listing = 0;              ///< incremented whenever `rows` is rebuilt
  std::optional<std::size_t> current;
  std::vector<std::size_t> marked; ///< rows, ascending; what a command takes when there are several
  bool listEnabled = true;
  JobColumn sortColumn = JobColumn::Eingangsdatum;
  bool sortDescending = true;
  JobCounts counts;
  JobCounts released;               ///< how many of the parked jobs are released
  std::vector<JobCause> causes;     ///< what holds up the parked jobs of the filter
  std::optional<std::size_t> cause; ///< the one to which the list is limited
  std::string label;                ///< `lblInfo`
  std::string result;               ///< how the last command ended; empty before the first one
  bool progressVisible = false;
  std::optional<int> progress; ///< percent; null while the total is unknown
  std::string notice;          ///< one discreet line about the list; empty for none
  bool databaseGone = false;   ///< whether the notice reports it
  std::string emptyHint;       ///< why nothing is listed and what to do; empty when something is listed
  std::string countText;       ///< "15 Vorgänge"
  std::string details;         ///< `txtDetails`
  bool customerSpecific = false;

  const ToolState& tool(Tool tool) const { return tools[indexOf(tool)]; }
};

/// The text of a filter's button: "Warnungen 50, davon 12 freigegeben".
std::string filterText(const JobViewState& state, Tool filter);

/// The keys that the list handles.
enum class JobViewKey : std::uint8_t { Enter, F1, F2, F5, F9, Delete };

/// `MainState` as stored.
enum class WindowState : std::int16_t { Normal = 0, Minimized = 1, Maximized = 2 };

/// The window's geometry in pixels.
struct WindowGeometry {
  int width = 0;
  int height = 0;
  WindowState state = WindowState::Normal;
  int left = 0;
  int top = 0;
};

/// The parts to restore; null where the switches or unreadable values leave the window unchanged.
struct StoredGeometry {
  std::optional<std::pair<int, int>> size;
  std::optional<WindowState> state;
  std::optional<int> left;
  std::optional<int> top;
};

/// Holds the state of the window and carries out every command.
///
/// Members do not raise: failures are skipped and reported to the diagnostics. During a run, an import, an
/// export or a purge every command and key but the stop is ignored. Not thread-safe; commands may arrive from
/// inside `Desktop::yield`.
class JobViewPresenter final : private EngineEvents {
public:
  /// All arguments must outlive the presenter.
  JobViewPresenter(Environment& environment, ImportJobObject2& engine, JobViewHost& windows);

  const JobViewState& state() const { return state_; }
  /// The option `Ändern` as last read; nothing in the view depends on it.
  bool mayChange() const { return mayChange_; }

  /// To be called before the view is visible: reads the jobs for the first time.
  void create();
  StoredGeometry storedGeometry() const;
  /// To be called once it is visible: permissions, the options on a first start, a file passed before.
  void load();
  /// The close box. True when the window may close; false while something is under way, which then ends as
  /// soon as possible and closes the window.
  bool close(const WindowGeometry& geometry);

  void command(Tool tool);
  void key(JobViewKey key);
  void headClick(std::size_t column);
  void timerTick();
  /// Makes a row current; `readDetails` then reads its details. Null for none.
  void select(std::optional<std::size_t> row);
  /// Marks rows, in any order, for the commands that take several jobs.
  void mark(std::vector<std::size_t> rows);
  /// Opens the dialog of a row, as a double click does.
  void open(std::size_t row);
  /// Limits the list to the jobs whose name, number or subject contains every word of the text.
  void search(std::string_view text);
  /// Whether a search asks the database, since not all jobs of the filter are listed.
  bool searchesDatabase() const { return beyondLimit(); }
  /// Counts the causes of the parked jobs anew, if they may have changed.
  void readCauses();
  /// Limits the list to the jobs of a cause; null for all.
  void showCause(std::optional<std::size_t> cause);
  /// Reads and checks the current job for the details pane. Writes nothing.
  /// The lines of the details pane: earlier reasons, findings, hints.
  std::vector<std::string> detailsOf(const std::string& job);
  void readDetails();

private:
  enum class Work : std::uint8_t { None, Run, Check, Files };

  class Busy;
  void ProcessProgress(std::int16_t percent) override;
  void ProcessInfo(std::string_view info) override;

  /// False when the step has failed, which is reported.
  template <class Step>
  bool skip(std::string_view where, Step&& step) {
    const std::string job = currentJob().value_or("");
    return !trapped(environment_.diagnostics, {where, job}, step);
  }
  bool databaseIsFree();
  void verify();
  void refresh();
  void refreshAndShow();
  void verifyAndRefresh();
  void verifyAndShow();
  void checkWaiting();
  bool mayGoOn(std::size_t done, std::size_t all);
  void listRows();
  bool isNarrowed() const { return !search_.empty() || state_.cause.has_value(); }
  std::vector<std::size_t> targets() const;
  std::vector<std::string> keysOf(const std::vector<std::size_t>& rows) const;
  std::string deletionQuestion(const std::vector<std::size_t>& rows);
  DeletionConsent mayDelete(const Message& question, const std::vector<std::string>& jobs);
  void keepCurrent(const std::optional<std::string>& jobId, std::optional<std::size_t> row);
  void readPermissions();
  void openCurrent();
  void erase();
  void setRelease(bool released);
  void release() { setRelease(true); }
  void takeBack() { setRelease(false); }
  void showProtocol();
  RunReport process(qxProcessState selection);
  template <qxProcessState Selection>
  void processOnly() {
    showRun(process(Selection));
  }
  void showRun(const RunReport& run);
  void tellJobsLeft();
  void processCustomersThenContracts();
  void stop();
  void purge();
  void purgeByDate();
  void importChosen();
  void importFile(std::string_view file);
  bool maySetBack(std::string_view file);
  std::string readFile(std::string_view file);
  void exportChosen();
  void exportMarked();
  void exportJobs(const JobKeys* only);
  void options();
  void about();
  void end() { windows_.closeWindow(); }
  template <bool JobListFilter::*State>
  void toggle();
  std::optional<std::string> currentJob() const;
  std::int64_t matchingJobs() const;
  bool beyondLimit() const;
  void compose();
  void composeTools();
  void composeTexts();
  void composeHint();
  std::string searchHint() const;
  bool mayBeStopped() const { return work_ == Work::Run || work_ == Work::Check; }

  Environment& environment_;
  ImportJobObject2& engine_;
  JobViewHost& windows_;
  Settings settings_;
  Subscription subscription_;

  JobListFilter filter_;
  JobListOrder order_;
  std::array<bool, jobColumnCount> descendingNext_{}; ///< the direction flags of the columns
  bool mayDelete_ = false;
  bool mayChange_ = false;
  Work work_ = Work::None;
  bool mailComesIn_ = false;
  bool stopAsked_ = false;
  bool closeAsked_ = false;
  bool closed_ = false;
  JobSearch search_;
  JobCounts elsewhere_;           ///< matches of the search in all states, when none is listed
  std::vector<JobListRow> found_; ///< the result of the list query
  ReleasedJobs released_;
  bool causesStale_ = true;
  std::chrono::steady_clock::time_point shownAt_; ///< when the progress of a check was last shown
  JobViewState state_;
};

} // namespace qx
