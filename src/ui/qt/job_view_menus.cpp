// The commands of the job view: menus, tool bar and keys.
#include "ui/qt/job_view_window.h"

#include "ui/qt/job_list_view.h"
#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <QAction>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

#include <cstddef>

namespace qx {
namespace {

QString withoutAccessKey(std::string_view caption) { return toQt(caption).remove(QLatin1Char('&')); }

} // namespace

QAction* JobViewWindow::makeAction(const char* name, const QString& caption, const QKeySequence& shortcut) {
  auto* action = new QAction(caption, this);
  action->setObjectName(QString::fromUtf8(name));
  action->setShortcut(shortcut);
  addAction(action);
  return action;
}

void JobViewWindow::makeActions() {
  for (const ToolSpec& spec : jobViewTools()) {
    if (spec.tool == Tool::EinzelnVerarbeiten) continue;
    auto* action = new QAction(toQt(spec.caption), this);
    // The key belongs to the list; the menu only shows it.
    if (!spec.key.empty()) action->setText(toQt(spec.caption) + QLatin1Char('\t') + toQt(spec.key));
    action->setObjectName(toQt(spec.name));
    action->setIconText(withoutAccessKey(spec.caption).remove(QStringLiteral("...")));
    action->setToolTip(toQt(spec.tip));
    action->setStatusTip(QString());
    action->setCheckable(spec.checkable);
    if (!spec.picture.empty()) action->setIcon(picture(spec.picture));
    connect(action, &QAction::triggered, this, [this, tool = spec.tool] { command(tool); });
    actions_[indexOf(spec.tool)] = action;
  }
  tool(Tool::ProcessTransactions)->setIconText(QStringLiteral("Verarbeiten"));
  tool(Tool::UpdateDisplay)->setIconText(QStringLiteral("Prüfen"));

  tool(Tool::Release)->setShortcut(Qt::CTRL | Qt::Key_G);
  tool(Tool::TakeBack)->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_G);
  copy_ = makeAction("mnuCopy", QStringLiteral("Zeilen &kopieren"), QKeySequence());
  copy_->setShortcuts(QKeySequence::Copy);
  copy_->setShortcutContext(Qt::WidgetShortcut);
  list_->addAction(copy_);
  connect(copy_, &QAction::triggered, this, [this] { copyRows(); });
  find_ = makeAction("mnuSearch", QStringLiteral("&Suchen"), QKeySequence(Qt::CTRL | Qt::Key_F));
  find_->setIcon(picture("tool-search"));
  connect(find_, &QAction::triggered, this, [this] {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  });
  refresh_ = makeAction("mnuRefresh", QStringLiteral("&Liste neu lesen\tF5"), QKeySequence());
  connect(refresh_, &QAction::triggered, this, [this] {
    presenter_.key(JobViewKey::F5);
    render();
  });
  showKeys_ = makeAction("mnuShowKeys", QStringLiteral("&Schlüssel anzeigen"), QKeySequence());
  showKeys_->setCheckable(true);
  connect(showKeys_, &QAction::toggled, this,
          [this](bool on) { list_->setColumnHidden(static_cast<int>(JobColumn::JobID), !on); });
}

QAction* JobViewWindow::tool(Tool tool) const { return actions_[indexOf(tool)]; }

QMenu* JobViewWindow::makeMenu(const QString& caption, std::initializer_list<std::optional<Tool>> tools) {
  auto* menu = menuBar()->addMenu(caption);
  menu->setToolTipsVisible(true);
  for (const std::optional<Tool> each : tools)
    if (each)
      menu->addAction(tool(*each));
    else
      menu->addSeparator();
  return menu;
}

void JobViewWindow::makeMenus() {
  constexpr std::nullopt_t separator = std::nullopt;
  menuBar()->setObjectName(QStringLiteral("ActiveBar1"));
  makeMenu(QStringLiteral("&Datei"),
           {Tool::ImportProcessTransactions, Tool::Export, Tool::ExportMarked, separator, Tool::End});
  QMenu* edit =
      makeMenu(QStringLiteral("&Bearbeiten"), {Tool::OpenJob, Tool::Release, Tool::TakeBack, separator,
                                               Tool::Delete, Tool::DeleteViewDone, Tool::DeleteDate});
  edit->insertAction(tool(Tool::Delete), copy_);
  edit->insertAction(tool(Tool::Delete), find_);
  edit->insertSeparator(tool(Tool::Delete));
  QMenu* view = makeMenu(QStringLiteral("&Ansicht"), {});
  for (const Tool each : {Tool::ViewWaiting, Tool::ViewWarnings, Tool::ViewError, Tool::ViewDone})
    view->addAction(tool(each));
  view->addSeparator();
  view->addAction(refresh_);
  view->addMenu(makeSortMenu());
  view->addMenu(makeColumnMenu());
  makeMenu(QStringLiteral("&Verarbeiten"),
           {Tool::ProcessTransactions, separator, Tool::Kunden, Tool::Verträge, Tool::KundenVerträge,
            Tool::Aufträge, Tool::Zubehör, separator, Tool::UpdateDisplay, Tool::StopProcessing, separator,
            Tool::DayProtocol});
  makeMenu(QStringLiteral("E&xtras"), {Tool::Options});
  makeMenu(QStringLiteral("&Hilfe"), {Tool::About});
}

/// What a click on a heading does, for the keyboard; the same column again reverses the order.
QMenu* JobViewWindow::makeSortMenu() {
  auto* menu = new QMenu(QStringLiteral("S&ortieren nach"), this);
  for (std::size_t column = 0; column < jobColumnCount; ++column) {
    const JobColumnSpec& spec = columnSpec(static_cast<JobColumn>(column));
    if (!spec.sortedBy) continue;
    QAction* action = menu->addAction(QLatin1Char('&') + toQt(spec.caption));
    action->setObjectName(QStringLiteral("mnuSort") + toQt(spec.name));
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, column] {
      presenter_.headClick(column);
      render();
    });
    sortActions_[column] = action;
  }
  return menu;
}

QMenu* JobViewWindow::makeColumnMenu() {
  auto* menu = new QMenu(QStringLiteral("S&palten"), this);
  menu->addAction(showKeys_);
  menu->addSeparator();
  connect(menu->addAction(QStringLiteral("An den Inhalt &anpassen")), &QAction::triggered, list_,
          &JobListView::fitColumns);
  const auto widen = [this, menu](const QString& caption, const QKeySequence& keys, int letters) {
    QAction* action = menu->addAction(caption);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, [this, letters] { list_->widenCurrent(letters); });
  };
  widen(QStringLiteral("&Breiter"), QKeySequence(Qt::CTRL | Qt::Key_Plus), 2);
  widen(QStringLiteral("&Schmaler"), QKeySequence(Qt::CTRL | Qt::Key_Minus), -2);
  const auto move = [this, menu](const QString& caption, const QKeySequence& keys, int places) {
    QAction* action = menu->addAction(caption);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, [this, places] { list_->moveCurrent(places); });
  };
  move(QStringLiteral("Nach &links"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Left), -1);
  move(QStringLiteral("Nach &rechts"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Right), 1);
  connect(menu->addAction(QStringLiteral("&Zurücksetzen")), &QAction::triggered, this, [this] {
    list_->arrangeColumns();
    showKeys_->setChecked(false);
  });
  return menu;
}

void JobViewWindow::makeToolBar() {
  QToolBar* bar = addToolBar(QStringLiteral("Werkzeuge"));
  bar->setObjectName(QStringLiteral("toolBar"));
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  const int side = style()->pixelMetric(QStyle::PM_SmallIconSize) * 5 / 4;
  bar->setIconSize({side, side});

  processMenu_ = new QMenu(this);
  processMenu_->addAction(tool(Tool::ProcessTransactions));
  const ToolSpec& single = toolSpec(Tool::EinzelnVerarbeiten);
  QMenu* singleMenu = processMenu_->addMenu(toQt(single.caption));
  singleMenu->menuAction()->setObjectName(toQt(single.name));
  singleMenu->menuAction()->setToolTip(toQt(single.tip));
  for (const Tool each : {Tool::Kunden, Tool::Verträge, Tool::KundenVerträge, Tool::Aufträge, Tool::Zubehör})
    singleMenu->addAction(tool(each));
  actions_[indexOf(single.tool)] = singleMenu->menuAction();

  processButton_ = new QToolButton(bar);
  processButton_->setObjectName(QStringLiteral("btnProcess"));
  processButton_->setDefaultAction(tool(Tool::ProcessTransactions));
  processButton_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  processButton_->setIconSize({side, side});
  bar->addWidget(processButton_);
  bar->addAction(tool(Tool::UpdateDisplay));
  bar->addSeparator();
  bar->addAction(tool(Tool::ImportProcessTransactions));
  bar->addAction(tool(Tool::Export));
  bar->addSeparator();
  bar->addAction(tool(Tool::Delete));
  bar->addAction(tool(Tool::Options));
}

void JobViewWindow::showListMenu(const QPoint& at) {
  if (!list_->indexAt(at).isValid()) return;
  QMenu menu(this);
  menu.addAction(tool(Tool::OpenJob));
  menu.addAction(copy_);
  menu.addSeparator();
  menu.addAction(tool(Tool::Release));
  menu.addAction(tool(Tool::TakeBack));
  menu.addAction(tool(Tool::ExportMarked));
  menu.addSeparator();
  menu.addAction(tool(Tool::Delete));
  menu.exec(list_->viewport()->mapToGlobal(at));
}

} // namespace qx
