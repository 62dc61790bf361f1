// Where and how large the job view opens, and the widths within it.
#include "ui/qt/job_view_window.h"

#include "ui/qt/job_list_view.h"
#include "ui/qt/window_memory.h"

#include <QAction>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QSplitter>

#include <algorithm>
#include <string_view>

namespace qx {
namespace {

constexpr std::string_view layoutSection = "MAIN";
constexpr std::string_view columnsKey = "MainColumns";
constexpr std::string_view splitterKey = "MainSplitter";
constexpr std::string_view lowerKey = "MainCauses";

/// Moved and cut so that all of it can be seen on one screen.
QRect onScreen(const QWidget& window, QRect wanted) {
  const QScreen* screen = QGuiApplication::screenAt(wanted.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return wanted;
  const QRect available = screen->availableGeometry();
  const QSize room = roomFor(window, *screen);
  wanted.setSize(wanted.size().boundedTo(room));
  // The frame is on all sides, most of it above.
  const int side = (available.width() - room.width()) / 2;
  const int above = available.height() - room.height() - side;
  wanted.moveLeft(std::clamp(wanted.left(), available.left() + side,
                             available.left() + side + room.width() - wanted.width()));
  wanted.moveTop(std::clamp(wanted.top(), available.top() + above,
                            available.top() + above + room.height() - wanted.height()));
  return wanted;
}

} // namespace

WindowGeometry JobViewWindow::shownGeometry() const {
  const QRect normal = isVisible() ? normalGeometry() : geometry();
  WindowState shown = WindowState::Normal;
  if (isMinimized()) shown = WindowState::Minimized;
  if (isMaximized()) shown = WindowState::Maximized;
  return {normal.width(), normal.height(), shown, normal.left(), normal.top()};
}

void JobViewWindow::restoreWindow() {
  const StoredGeometry stored = presenter_.storedGeometry();
  QRect wanted = geometry();
  if (stored.size) wanted.setSize({stored.size->first, stored.size->second});
  if (stored.left) wanted.moveLeft(*stored.left);
  if (stored.top) wanted.moveTop(*stored.top);
  wanted.setSize(wanted.size().expandedTo(minimumSizeHint()));
  wanted = onScreen(*this, wanted);
  if (stored.left || stored.top)
    setGeometry(wanted);
  else
    resize(wanted.size());
  if (stored.state == WindowState::Maximized) setWindowState(Qt::WindowMaximized);
  if (stored.state == WindowState::Minimized) setWindowState(Qt::WindowMinimized);
}

QByteArray JobViewWindow::stored(std::string_view key) const {
  return QByteArray::fromBase64(
      QByteArray::fromStdString(settings_.get(applicationName, layoutSection, key, true)));
}

void JobViewWindow::restoreLayout() {
  if (const QByteArray columns = stored(columnsKey); !columns.isEmpty()) {
    if (!list_->horizontalHeader()->restoreState(columns)) list_->arrangeColumns();
  }
  if (const QByteArray split = stored(splitterKey); !split.isEmpty()) splitter_->restoreState(split);
  if (const QByteArray split = stored(lowerKey); !split.isEmpty()) lower_->restoreState(split);
  showKeys_->setChecked(!list_->isColumnHidden(static_cast<int>(JobColumn::JobID)));
}

void JobViewWindow::saveLayout() {
  const auto keep = [this](std::string_view key, const QByteArray& state) {
    settings_.save(applicationName, layoutSection, key, state.toBase64().toStdString(), true);
  };
  keep(columnsKey, list_->horizontalHeader()->saveState());
  keep(splitterKey, splitter_->saveState());
  keep(lowerKey, lower_->saveState());
}

} // namespace qx
