#include "ui/qt/job_view_window.h"

#include "ui/qt/busy_wait.h"
#include "ui/qt/causes_pane.h"
#include "ui/qt/job_list_model.h"
#include "ui/qt/job_list_view.h"
#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace qx {
namespace {

using namespace std::chrono_literals;

constexpr auto tickInterval = 2s;
/// The details of a job are read when the clerk pauses on it, not on every row passed.
constexpr auto detailsDelay = 60ms;
/// A search that asks the database begins when the clerk pauses typing.
constexpr auto searchDelay = 200ms;
constexpr QSize firstSize(1100, 700);

constexpr std::array filterTools{Tool::ViewWaiting, Tool::ViewWarnings, Tool::ViewError, Tool::ViewDone};

std::optional<JobViewKey> listKey(int key) {
  switch (key) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return JobViewKey::Enter;
  case Qt::Key_F1:
    return JobViewKey::F1;
  case Qt::Key_F2:
    return JobViewKey::F2;
  case Qt::Key_F5:
    return JobViewKey::F5;
  case Qt::Key_F9:
    return JobViewKey::F9;
  case Qt::Key_Delete:
    return JobViewKey::Delete;
  default:
    return std::nullopt;
  }
}

} // namespace

JobViewWindow::JobViewWindow(Environment& environment, ImportJobObject2& engine, JobViewDialogs dialogs)
    : dialogs_(std::move(dialogs)), settings_(environment), model_(new JobListModel(this)),
      list_(new JobListView(this)), details_(new JobDetailsPane(this)),
      causes_(new CausesPane(
          [this](std::optional<std::size_t> cause) {
            presenter_.showCause(cause);
            render();
          },
          this)),
      splitter_(new QSplitter(Qt::Vertical, this)), lower_(new QSplitter(Qt::Horizontal, this)),
      notice_(new QLabel(this)), info_(new QLabel(this)), result_(new QLabel(this)),
      progress_(new QProgressBar(this)), count_(new QLabel(this)), timer_(this),
      presenter_(environment, engine, *this) {
  setObjectName(QStringLiteral("frmJobView"));
  setWindowTitle(QStringLiteral("Importvorgänge"));
  makeActions();
  makeMenus();
  makeToolBar();

  list_->setObjectName(QStringLiteral("TDBList1"));
  list_->setAccessibleName(QStringLiteral("Importvorgänge"));
  list_->setModel(model_);
  list_->arrangeColumns();
  connectList();

  notice_->setObjectName(QStringLiteral("lblNotice"));
  notice_->setContentsMargins(6, 2, 6, 2);
  auto* upper = new QWidget(this);
  auto* upperLayout = new QVBoxLayout(upper);
  upperLayout->setContentsMargins(0, 0, 0, 0);
  upperLayout->setSpacing(2);
  upperLayout->addWidget(makeFilterBar());
  upperLayout->addWidget(notice_);
  upperLayout->addWidget(list_, 1);
  splitter_->setObjectName(QStringLiteral("splitter"));
  splitter_->addWidget(upper);
  lower_->setObjectName(QStringLiteral("lowerSplitter"));
  lower_->addWidget(details_);
  lower_->addWidget(causes_);
  lower_->setStretchFactor(0, 3);
  lower_->setStretchFactor(1, 2);
  lower_->setChildrenCollapsible(false);
  splitter_->addWidget(lower_);
  auto* const back = new QShortcut(Qt::Key_Escape, lower_);
  back->setContext(Qt::WidgetWithChildrenShortcut);
  connect(back, &QShortcut::activated, list_, [this] { list_->setFocus(Qt::OtherFocusReason); });
  splitter_->setStretchFactor(0, 4);
  splitter_->setStretchFactor(1, 1);
  splitter_->setChildrenCollapsible(false);
  auto* centre = new QWidget(this);
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(6, 0, 6, 0);
  layout->addWidget(splitter_);
  setCentralWidget(centre);
  makeStatusLine();
  resize(firstSize);

  timer_.setObjectName(QStringLiteral("Timer1"));
  connect(&timer_, &QTimer::timeout, this, [this] { presenter_.timerTick(); });
  detailsTimer_.setSingleShot(true);
  connect(&detailsTimer_, &QTimer::timeout, this, [this] {
    presenter_.readDetails();
    presenter_.readCauses();
    render();
  });
  searchTimer_.setSingleShot(true);
  connect(&searchTimer_, &QTimer::timeout, this, [this] { search(); });
}

JobViewWindow::~JobViewWindow() = default;

void JobViewWindow::open() {
  show();
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
}

void JobViewWindow::setVisible(bool visible) {
  if (!visible || opened_) {
    QMainWindow::setVisible(visible);
    return;
  }
  opened_ = true;
  presenter_.create();
  restoreLayout();
  restoreWindow();
  render();
  list_->setFocus();
  QMainWindow::setVisible(true);
  timer_.start(tickInterval);
  // The options of a first start and the report on a file open above a visible window.
  QMetaObject::invokeMethod(
      this,
      [this] {
        presenter_.load();
        render();
      },
      Qt::QueuedConnection);
}

QLineEdit* JobViewWindow::makeSearch(QWidget* parent) {
  search_ = new QLineEdit(parent);
  search_->setObjectName(QStringLiteral("txtSearch"));
  search_->setAccessibleName(QStringLiteral("Suchen"));
  search_->setPlaceholderText(QStringLiteral("Suchen (Strg+F)"));
  search_->setToolTip(QStringLiteral("Zeigt nur Vorgänge, deren Name, Nummer oder Betreff den Text enthält"));
  search_->setClearButtonEnabled(true);
  search_->setMaximumWidth(search_->fontMetrics().averageCharWidth() * 36);
  if (const QIcon icon = picture("tool-search"); !icon.isNull())
    search_->addAction(icon, QLineEdit::LeadingPosition);
  search_->installEventFilter(this);
  connect(search_, &QLineEdit::textChanged, this, [this] {
    if (presenter_.searchesDatabase()) return searchTimer_.start(searchDelay);
    search();
  });
  return search_;
}

QWidget* JobViewWindow::makeFilterBar() {
  auto* bar = new QWidget(this);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 2, 0, 2);
  for (std::size_t i = 0; i < filterTools.size(); ++i) {
    const Tool filter = filterTools[i];
    auto* button = new QToolButton(bar);
    button->setObjectName(QStringLiteral("btn") + toQt(toolSpec(filter).name));
    button->setCheckable(true);
    // Flat when off and framed when on: colour alone would not be enough on a dark screen.
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIcon(tool(filter)->icon());
    button->setToolTip(tool(filter)->toolTip());
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, this, [this, filter] { command(filter); });
    layout->addWidget(button);
    filterButtons_[i] = button;
  }
  layout->addStretch(1);
  layout->addWidget(makeSearch(bar), 2);
  return bar;
}

void JobViewWindow::makeStatusLine() {
  info_->setObjectName(QStringLiteral("lblInfo"));
  progress_->setObjectName(QStringLiteral("ProgressBar"));
  progress_->setAccessibleName(QStringLiteral("Fortschritt der Verarbeitung"));
  progress_->setMaximumWidth(progress_->fontMetrics().averageCharWidth() * 40);
  stopButton_ = new QToolButton(this);
  stopButton_->setObjectName(QStringLiteral("btnStop"));
  stopButton_->setDefaultAction(tool(Tool::StopProcessing));
  stopButton_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  stopButton_->setFocusPolicy(Qt::StrongFocus);
  result_->setObjectName(QStringLiteral("lblErgebnis"));
  result_->setContentsMargins(6, 0, 6, 0);
  result_->setTextFormat(Qt::PlainText);
  result_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  count_->setObjectName(QStringLiteral("lblCount"));
  count_->setContentsMargins(6, 0, 6, 0);
  statusBar()->addWidget(info_);
  statusBar()->addWidget(result_, 1);
  statusBar()->addPermanentWidget(progress_);
  statusBar()->addPermanentWidget(stopButton_);
  statusBar()->addPermanentWidget(count_);
}

void JobViewWindow::connectList() {
  list_->installEventFilter(this);
  connect(list_, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    presenter_.open(static_cast<std::size_t>(index.row()));
    render();
  });
  connect(list_, &QTableView::customContextMenuRequested, this,
          [this](const QPoint& at) { showListMenu(at); });
  connect(list_->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
    presenter_.headClick(static_cast<std::size_t>(column));
    render();
  });
  connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { takeMarks(); });
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { takeMarks(); });
}

/// The cursor comes with the marks: the toolkit tells of them one after the other.
void JobViewWindow::takeMarks() {
  if (rendering_) return;
  const QModelIndex current = list_->currentIndex();
  std::vector<std::size_t> rows;
  for (const QModelIndex& row : list_->selectionModel()->selectedRows())
    rows.push_back(static_cast<std::size_t>(row.row()));
  presenter_.select(current.isValid() ? std::optional(static_cast<std::size_t>(current.row()))
                                      : std::nullopt);
  presenter_.mark(std::move(rows));
  render();
}

/// The focus returns to the list, wherever a dialog or a button has left it.
void JobViewWindow::command(Tool tool) {
  presenter_.command(tool);
  render();
  if (list_->isEnabled()) list_->setFocus(Qt::OtherFocusReason);
}

void JobViewWindow::search() {
  searchTimer_.stop();
  presenter_.search(fromQt(search_->text()));
  render();
}

void JobViewWindow::copyRows() {
  const QString text = list_->markedText();
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

bool JobViewWindow::passKey(const QKeyEvent& event) {
  const auto key = listKey(event.key());
  const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!key || !plain) return false;
  presenter_.key(*key);
  render();
  return true;
}

bool JobViewWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QMainWindow::eventFilter(watched, event);
  const auto& key = static_cast<QKeyEvent&>(*event);
  if (watched == list_ && passKey(key)) return true;
  if (watched == search_) {
    // Moves from the search to the matches, and clears the search.
    if (key.key() == Qt::Key_Down || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
      list_->setFocus(Qt::OtherFocusReason);
      return true;
    }
    if (key.key() == Qt::Key_Escape) {
      search_->clear();
      list_->setFocus(Qt::OtherFocusReason);
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

/// The function keys work everywhere; Enter and Del only in the list.
void JobViewWindow::keyPressEvent(QKeyEvent* event) {
  const bool function =
      event->key() == Qt::Key_F2 || event->key() == Qt::Key_F5 || event->key() == Qt::Key_F9;
  if (!function || !passKey(*event)) QMainWindow::keyPressEvent(event);
}

void JobViewWindow::closeEvent(QCloseEvent* event) {
  if (!presenter_.close(shownGeometry())) {
    event->ignore();
    return;
  }
  timer_.stop();
  detailsTimer_.stop();
  if (opened_) saveLayout();
  event->accept();
}

std::unique_ptr<BusyWait> JobViewWindow::databaseWait() { return std::make_unique<QtBusyWait>(this); }

std::optional<DeletionAnswer> JobViewWindow::askDeletion(const Message& question) {
  return dialogs_.askDeletion ? dialogs_.askDeletion(question) : std::nullopt;
}

DialogEnd JobViewWindow::openJob(std::string_view jobId, const JobPlace& place) {
  render();
  showCurrent();
  return dialogs_.openJob ? dialogs_.openJob(this, jobId, place) : DialogEnd::Closed;
}

void JobViewWindow::options() {
  if (dialogs_.options) dialogs_.options(this);
}

void JobViewWindow::deleteDate() {
  if (dialogs_.deleteDate) dialogs_.deleteDate(this);
}

void JobViewWindow::about() {
  if (dialogs_.about) dialogs_.about(this);
}

void JobViewWindow::report(std::string_view title, std::string_view text) {
  if (dialogs_.report) dialogs_.report(this, title, text);
}

void JobViewWindow::showCurrent() {
  render();
  if (list_->currentIndex().isValid()) list_->scrollTo(list_->currentIndex());
}

void JobViewWindow::redraw() {
  if (std::exchange(drawPending_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (drawPending_) render();
      },
      Qt::QueuedConnection);
}

void JobViewWindow::closeWindow() {
  QMetaObject::invokeMethod(
      this, [this] { close(); }, Qt::QueuedConnection);
}

void JobViewWindow::render() {
  drawPending_ = false;
  rendering_ = true;
  renderTools();
  renderList();
  renderTexts();
  rendering_ = false;
}

void JobViewWindow::renderTools() {
  for (const ToolSpec& spec : jobViewTools()) {
    const ToolState& shown = state().tool(spec.tool);
    QAction* action = tool(spec.tool);
    action->setEnabled(shown.enabled);
    action->setVisible(shown.visible);
    if (spec.checkable) action->setChecked(shown.checked);
  }
  processButton_->setMenu(state().customerSpecific ? processMenu_ : nullptr);
  processButton_->setPopupMode(state().customerSpecific ? QToolButton::MenuButtonPopup
                                                        : QToolButton::DelayedPopup);
  for (std::size_t i = 0; i < filterTools.size(); ++i) {
    const ToolState& shown = state().tool(filterTools[i]);
    QToolButton* button = filterButtons_[i];
    button->setEnabled(shown.enabled);
    button->setChecked(shown.checked);
    button->setText(toQt(filterText(state(), filterTools[i])));
  }
  const bool idle = state().tool(Tool::Options).enabled;
  search_->setEnabled(idle);
  refresh_->setEnabled(state().listEnabled);
  copy_->setEnabled(state().listEnabled && state().current.has_value());
}

void JobViewWindow::renderList() {
  const std::string job = state().current ? state().rows[*state().current].jobId : std::string();
  const int down = list_->verticalScrollBar()->value();
  const int across = list_->horizontalScrollBar()->value();
  const bool made = state().listing != shownListing_;
  if (made) {
    model_->setRows(state().rows);
    shownListing_ = state().listing;
    list_->doItemsLayout();
  }
  const QModelIndex current = state().current ? model_->index(static_cast<int>(*state().current),
                                                              static_cast<int>(JobColumn::Vorgang))
                                              : QModelIndex();
  if (made || (current.isValid() && list_->currentIndex().row() != current.row())) {
    // Makes the row current without scrolling to it, so that an unmoved job does not seem to move.
    list_->setAutoScroll(false);
    const bool several = made && state().marked.size() > 1;
    list_->selectionModel()->setCurrentIndex(current, several ? QItemSelectionModel::Clear
                                                              : QItemSelectionModel::ClearAndSelect |
                                                                    QItemSelectionModel::Rows);
    for (const std::size_t row : several ? state().marked : std::vector<std::size_t>())
      list_->selectionModel()->select(model_->index(static_cast<int>(row), 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    list_->setAutoScroll(true);
    list_->verticalScrollBar()->setValue(down);
    if (current.isValid() && job != shownJob_) list_->scrollTo(current);
    list_->horizontalScrollBar()->setValue(across);
  }
  if (made || job != shownJob_) detailsTimer_.start(detailsDelay);
  shownJob_ = job;
  const bool hadFocus = list_->hasFocus();
  if (list_->isEnabled() != state().listEnabled) {
    list_->setEnabled(state().listEnabled);
    // A disabled list loses the focus. The window keeps it meanwhile, so that the list gets it back unless
    // the clerk has moved it.
    if (hadFocus) setFocus();
    if (state().listEnabled && QApplication::focusWidget() == this) list_->setFocus();
  }
  renderSorting();
  list_->setHint(toQt(state().emptyHint));
}

void JobViewWindow::renderSorting() {
  list_->horizontalHeader()->setSortIndicator(static_cast<int>(state().sortColumn), state().sortDescending
                                                                                        ? Qt::DescendingOrder
                                                                                        : Qt::AscendingOrder);
  for (std::size_t column = 0; column < jobColumnCount; ++column)
    if (sortActions_[column] != nullptr)
      sortActions_[column]->setChecked(static_cast<std::size_t>(state().sortColumn) == column);
}

void JobViewWindow::renderTexts() {
  notice_->setText(toQt(state().notice));
  notice_->setVisible(!state().notice.empty());
  info_->setText(toQt(state().label));
  info_->setVisible(!state().label.empty());
  result_->setText(toQt(state().result));
  // What is under way matters more than what was.
  result_->setVisible(state().label.empty());
  causes_->show(state().causes, state().cause);
  progress_->setVisible(state().progressVisible);
  progress_->setRange(0, state().progress ? 100 : 0);
  progress_->setValue(state().progress.value_or(0));
  stopButton_->setVisible(state().progressVisible && state().progress.has_value());
  count_->setText(toQt(state().countText));
  details_->setText(toQt(state().details));
}

} // namespace qx
