// The job view without a toolkit: what the clerk's main window shows and does.
#pragma once

#include "engine/import_job_object2.h"
#include "ui/job_view_terms.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// What the presenter asks of the window around it.
class JobViewHost {
public:
  virtual ~JobViewHost() = default;
  /// Opens the dialog of a job modally. True when the clerk wants to go on to the next one, which only
  /// happens when `offerNext` says that there is one.
  virtual bool openJob(std::string_view jobId, bool offerNext) = 0;
  virtual void options() = 0;
  virtual void deleteDate() = 0;
  virtual void about() = 0;
  /// Shows a long text that can be read and copied.
  virtual void report(std::string_view title, std::string_view text) = 0;
  /// Brings the current job into sight at once.
  virtual void showCurrent() = 0;
  /// The state has changed. May come while a unit of work is open: the window draws when the message loop
  /// runs next, never at once.
  virtual void redraw() = 0;
  /// What is shown while another program holds the database; null for nothing.
  virtual std::unique_ptr<BusyWait> databaseWait() { return nullptr; }
  /// Closes the window as its close box does, once the message loop runs again.
  virtual void closeWindow() = 0;
};

struct ToolState {
  bool enabled = true;
  bool checked = false;
  bool visible = true;
};

/// All that the window shows.
struct JobViewState {
  std::array<ToolState, toolCount> tools; ///< by `Tool`
  std::vector<JobListRow> rows;           ///< what is listed, after the search
  std::uint64_t listing = 0;              ///< grows whenever `rows` is made anew
  std::optional<std::size_t> current;
  bool listEnabled = true;
  JobColumn sortColumn = JobColumn::Eingangsdatum;
  bool sortDescending = true;
  JobCounts counts;
  std::string label; ///< `lblInfo`
  bool progressVisible = false;
  std::optional<int> progress; ///< percent; null while it is not known how much there is
  std::string notice;          ///< one quiet line on the list; empty for none
  bool databaseGone = false;   ///< the notice says so
  std::string emptyHint;       ///< why nothing is listed and what to do; empty when something is
  std::string countText;       ///< "15 Vorgänge"
  std::string details;         ///< `txtDetails`
  bool customerSpecific = false;

  const ToolState& tool(Tool tool) const { return tools[indexOf(tool)]; }
};

/// The keys that the list answers to.
enum class JobViewKey : std::uint8_t { Enter, F1, F2, F5, F9, Delete };

/// `MainState` as it is stored.
enum class WindowState : std::int16_t { Normal = 0, Minimized = 1, Maximized = 2 };

/// Where the window stands, in pixels.
struct WindowPlace {
  int width = 0;
  int height = 0;
  WindowState state = WindowState::Normal;
  int left = 0;
  int top = 0;
};

/// What is to be restored of it; null where the switches, or unreadable values, leave the window as it is.
struct StoredPlace {
  std::optional<std::pair<int, int>> size;
  std::optional<WindowState> state;
  std::optional<int> left;
  std::optional<int> top;
};

/// Holds the form state, carries out every command and says what is to be seen.
///
/// Members do not raise: what fails is skipped and told to the diagnostics. While a run, an import, an export
/// or a purge is under way every command and key but the stop is ignored. One thread; commands may arrive
/// from inside `Desktop::yield`.
class JobViewPresenter final : private EngineEvents {
public:
  /// Everything handed over outlives the presenter.
  JobViewPresenter(Environment& environment, ImportJobObject2& engine, JobViewHost& windows);

  const JobViewState& state() const { return state_; }
  /// The option `Ändern`, as it was read last; nothing in the view depends on it.
  bool mayChange() const { return mayChange_; }

  /// What happens when the view is made, before it can be seen: the first look at the jobs.
  void create();
  StoredPlace storedPlace() const;
  /// What happens once it can be seen: permissions, on a first start the options, a file handed over before.
  void load();
  /// The close box. True when the window may go; false while something is under way, which then ends as soon
  /// as it can and closes the window.
  bool close(const WindowPlace& place);

  void command(Tool tool);
  void key(JobViewKey key);
  void headClick(std::size_t column);
  void timerTick();
  /// Makes a row the current one; its details follow with `readDetails`. Null for none.
  void select(std::optional<std::size_t> row);
  /// Opens the dialog of a row, as a double click does.
  void open(std::size_t row);
  /// Narrows what is listed to the jobs whose name, number or subject contains every word of the text.
  void search(std::string_view text);
  /// Reads and checks the current job for the details pane. Writes nothing.
  void readDetails();

private:
  enum class Work : std::uint8_t { None, Run, Files };

  class Busy;
  void ProcessProgress(std::int16_t percent) override;
  void ProcessInfo(std::string_view info) override;

  template <class Step>
  bool skip(std::string_view where, Step&& step);
  bool databaseIsFree();
  void verify();
  void refresh();
  void refreshAndShow();
  void verifyAndShow();
  void listRows();
  void keepCurrent(const std::optional<std::string>& jobId, std::optional<std::size_t> place);
  void readPermissions();
  void openCurrent();
  void eraseCurrent();
  void process(qxProcessState selection);
  template <qxProcessState Selection>
  void processOnly() {
    process(Selection);
  }
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
  std::string searched_;
  std::vector<JobListRow> found_; ///< what the list query gave
  JobViewState state_;
};

} // namespace qx
