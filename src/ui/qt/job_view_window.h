// The clerk's main window.
#pragma once

#include "ui/job_view_presenter.h"

#include <QMainWindow>
#include <QTimer>

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QSplitter;
class QToolBar;
class QToolButton;

namespace qx {

class CausesPane;
class JobDetailsPane;
class JobListModel;
class JobListView;

/// The dialogs that the window opens; all of them are modal to the widget given. An empty function does
/// nothing.
struct JobViewDialogs {
  std::function<DialogEnd(QWidget* parent, std::string_view jobId, const JobPlace& place)> openJob;
  std::function<void(QWidget* parent)> options;
  std::function<void(QWidget* parent)> deleteDate;
  std::function<void(QWidget* parent)> about;
  std::function<void(QWidget* parent, std::string_view title, std::string_view text)> report;
  AskDeletion askDeletion;
};

/// Shows the state of the presenter and passes on the clerk's input; contains no logic.
///
/// It draws when the message loop runs, so that events raised inside a unit of work cost nothing. Its actions
/// carry the tool names, its controls their specified names as object names.
class JobViewWindow final : public QMainWindow, private JobViewHost {
public:
  /// Environment and engine must outlive the window.
  JobViewWindow(Environment& environment, ImportJobObject2& engine, JobViewDialogs dialogs);
  JobViewWindow(const JobViewWindow&) = delete;
  JobViewWindow& operator=(const JobViewWindow&) = delete;
  ~JobViewWindow() override;

  /// Shows itself in front of other windows.
  void open();
  /// When first shown it reads the jobs and restores its geometry; permissions, the options of a first start
  /// and a file passed before follow when the message loop runs.
  void setVisible(bool visible) override;
  const JobViewState& state() const { return presenter_.state(); }

protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  /// @name `JobViewHost`
  /// @{
  DialogEnd openJob(std::string_view jobId, const JobPlace& place) override;
  void options() override;
  void deleteDate() override;
  void about() override;
  void report(std::string_view title, std::string_view text) override;
  void showCurrent() override;
  void redraw() override;
  std::unique_ptr<BusyWait> databaseWait() override;
  std::optional<DeletionAnswer> askDeletion(const Message& question) override;
  void closeWindow() override;
  /// @}

  void makeActions();
  QAction* makeAction(const char* name, const QString& caption, const QKeySequence& shortcut);
  void makeMenus();
  QMenu* makeMenu(const QString& caption, std::initializer_list<std::optional<Tool>> tools);
  QMenu* makeSortMenu();
  QMenu* makeColumnMenu();
  void makeToolBar();
  QWidget* makeFilterBar();
  QLineEdit* makeSearch(QWidget* parent);
  void makeStatusLine();
  void connectList();
  QAction* tool(Tool tool) const;
  bool passKey(const QKeyEvent& event);
  void command(Tool tool);
  void takeMarks();
  void search();
  void copyRows();
  void showListMenu(const QPoint& at);

  void render();
  void renderTools();
  void renderList();
  void renderSorting();
  void renderTexts();

  void restoreWindow();
  void restoreLayout();
  void saveLayout();
  WindowGeometry shownGeometry() const;
  QByteArray stored(std::string_view key) const;

  JobViewDialogs dialogs_;
  Settings settings_;
  std::array<QAction*, toolCount> actions_{};   ///< by `Tool`
  std::array<QToolButton*, 4> filterButtons_{}; ///< one per state
  JobListModel* model_;
  JobListView* list_;
  JobDetailsPane* details_;
  CausesPane* causes_;
  QSplitter* splitter_;
  QSplitter* lower_;             ///< details and causes
  QMenu* processMenu_ = nullptr; ///< has the runs of one kind, in customer-specific mode
  QToolButton* processButton_ = nullptr;
  QLineEdit* search_ = nullptr;
  QLabel* notice_;
  QLabel* info_;
  QLabel* result_;
  QProgressBar* progress_;
  QToolButton* stopButton_ = nullptr;
  QLabel* count_;
  QAction* copy_ = nullptr;
  QAction* find_ = nullptr;
  QAction* refresh_ = nullptr;
  QAction* showKeys_ = nullptr;
  std::array<QAction*, jobColumnCount> sortActions_{}; ///< null for a column that does not sort
  QTimer timer_;
  QTimer detailsTimer_;
  QTimer searchTimer_;
  bool opened_ = false;
  bool drawPending_ = false;
  bool rendering_ = false;
  std::uint64_t shownListing_ = 0;
  std::string shownJob_;
  JobViewPresenter presenter_; ///< last: it uses everything above
};

} // namespace qx
