#include "ui/qt/job_dialog_window.h"

#include "settings/settings.h"
#include "ui/address_dialog_presenter.h"
#include "ui/counted.h"
#include "ui/job_dialogs.h"
#include "ui/qt/address_window.h"
#include "ui/qt/control_form.h"
#include "ui/qt/elided_label.h"
#include "ui/qt/findings_model.h"
#include "ui/qt/form_window.h"
#include "ui/qt/grid_delegate.h"
#include "ui/qt/grid_view.h"
#include "ui/qt/row_table.h"
#include "ui/qt/text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QShowEvent>
#include <QSplitter>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace qx {
namespace {

constexpr std::size_t checkedAtOnce = 50; ///< positions checked between two runs of the message loop

/// A click on a button both leaves the current field and saves.
constexpr std::chrono::milliseconds timeToSee{500};

/// The key under which the size of a dialog is stored.
std::string_view memoryKey(std::int16_t jobType) {
  switch (kindOf(jobType)) {
  case qxtjobkunden:
    return "DialogKunde";
  case qxtJobAufträge:
    return "DialogAuftrag";
  default:
    return "DialogVertrag";
  }
}

/// The captions of the buttons and headings that the dialog shows.
std::vector<std::string_view> captionsOf(const JobDialogPresenter& dialog) {
  std::vector<std::string_view> shown{captions::takeAll,     captions::release, captions::save,
                                      captions::saveAndGoOn, captions::cancel,  captions::findings};
  if (dialog.kind().addresses != nullptr) shown.push_back(captions::addresses);
  if (dialog.kind().erases) shown.push_back(captions::remove);
  if (dialog.kind().grid != nullptr) shown.push_back(captions::positions);
  return shown;
}

class JobDialogWindow final : public FormWindow {
public:
  JobDialogWindow(QWidget* parent, const DialogContext& context, JobDialogPresenter& dialog,
                  const JobPlace& place);

  DialogEnd end() const { return end_; }
  void reject() override;
  void done(int result) override;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

private:
  QWidget* buildHead();
  QWidget* buildForm();
  QWidget* buildFindings();
  QWidget* buildGrid();
  QLayout* buildButtons();
  void addStep(QLayout& row, const char* name, Qt::ArrowType arrow, const QString& tip,
               const QKeySequence& keys, DialogEnd end, bool possible);
  void addShortcuts();
  QPushButton* addButton(QLayout& row, const char* name, const QString& caption,
                         void (JobDialogWindow::*pressed)());
  void setSizes();
  void fitForm();

  /// Shows the current state of the presenter.
  void render();
  void renderFindings();
  /// Passes on the text that is still being typed.
  void commit();
  bool changed();
  bool mayLeave();
  bool save();
  void saveAndClose();
  void saveAndGoOn();
  void release();
  void erase();
  void editAddresses();
  void openDetails(std::size_t row);
  void goTo(const ListedFinding& finding);
  /// Goes to the place of the next finding, or of the previous one.
  void step(int rows);
  /// Leaves for another job without saving.
  void leaveFor(DialogEnd end);
  void takeOver();
  void takeAllOver();
  void copyFindings();
  void startChecks();
  void checkMore();

  DialogContext context_;
  JobDialogPresenter& dialog_;
  JobPlace place_;
  DialogEnd end_ = DialogEnd::Closed;
  ElidedLabel* title_ = nullptr;
  QLabel* findingsCaption_ = nullptr;
  QLabel* progress_ = nullptr;
  FindingsModel* findings_ = nullptr;
  QTableView* findingsView_ = nullptr;
  GridView* grid_ = nullptr;
  QPushButton* takeAll_ = nullptr;
  QPushButton* release_ = nullptr;
  QPushButton* save_ = nullptr;
  QTimer checks_;
  std::vector<ListedFinding> seen_; ///< already seen by the clerk
  QTimer seeing_;
};

JobDialogWindow::JobDialogWindow(QWidget* parent, const DialogContext& context, JobDialogPresenter& dialog,
                                 const JobPlace& place)
    : FormWindow(parent, context.environment, dialog, dialog.kind().boxTitle, memoryKey(dialog.jobType()),
                 captionsOf(dialog)),
      context_(context), dialog_(dialog), place_(place) {
  setObjectName(QStringLiteral("frmVorgang"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(buildHead());
  splitter_ = new QSplitter(Qt::Vertical, this);
  splitter_->setChildrenCollapsible(false);
  splitter_->addWidget(buildForm());
  splitter_->addWidget(buildFindings());
  if (dialog_.kind().grid != nullptr) splitter_->addWidget(buildGrid());
  layout->addWidget(splitter_, 1);
  layout->addLayout(buildButtons());
  addShortcuts();
  seen_ = dialog_.findings();
  seeing_.setSingleShot(true);
  seeing_.setInterval(timeToSee);
  connect(&seeing_, &QTimer::timeout, this, [this] { seen_ = dialog_.findings(); });
  checks_.setInterval(0);
  connect(&checks_, &QTimer::timeout, this, &JobDialogWindow::checkMore);
  render();
  setSizes();
  startChecks();
}

QWidget* JobDialogWindow::buildHead() {
  auto* head = new QWidget(this);
  auto* layout = new QVBoxLayout(head);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  title_ = new ElidedLabel(head);
  title_->setObjectName(QStringLiteral("lblTitel"));
  QFont font = title_->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * 1.2);
  title_->setFont(font);
  auto* line = new QHBoxLayout;
  line->addWidget(title_, 1);
  if (place_.isListed()) {
    auto* place =
        new QLabel(QStringLiteral("Vorgang %1 von %2")
                       .arg(toQt(grouped(whole(place_.number))), toQt(grouped(whole(place_.count)))),
                   head);
    place->setObjectName(QStringLiteral("lblStelle"));
    line->addWidget(place);
    addStep(*line, "cmdVoriger", Qt::LeftArrow, QStringLiteral("Voriger Vorgang, ohne zu speichern (F7)"),
            Qt::Key_F7, DialogEnd::Previous, place_.hasPrevious());
    addStep(*line, "cmdNächster", Qt::RightArrow, QStringLiteral("Nächster Vorgang, ohne zu speichern (F8)"),
            Qt::Key_F8, DialogEnd::Next, place_.hasNext());
  }
  layout->addLayout(line);
  layout->addWidget(notice_);
  return head;
}

void JobDialogWindow::addStep(QLayout& row, const char* name, Qt::ArrowType arrow, const QString& tip,
                              const QKeySequence& keys, DialogEnd end, bool possible) {
  auto* button = new QToolButton(this);
  button->setObjectName(QString::fromUtf8(name));
  button->setArrowType(arrow);
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setFocusPolicy(Qt::NoFocus);
  button->setEnabled(possible);
  // A shortcut of the button itself would act after a delay.
  connect(new QShortcut(keys, this), &QShortcut::activated, button, &QToolButton::click);
  connect(button, &QToolButton::clicked, this, [this, end] { leaveFor(end); });
  row.addWidget(button);
}

void JobDialogWindow::addShortcuts() {
  const auto add = [this](const QKeySequence& keys, std::function<void()> action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, std::move(action));
  };
  add(QKeySequence::Save, [this] { save_->click(); });
  add(Qt::Key_F3, [this] { step(1); });
  add(Qt::SHIFT | Qt::Key_F3, [this] { step(-1); });
  add(Qt::Key_F6, [this] { takeOver(); });
  add(Qt::SHIFT | Qt::Key_F6, [this] { takeAllOver(); });
}

QWidget* JobDialogWindow::buildForm() {
  scroll_->viewport()->setAutoFillBackground(false);
  form_->setAutoFillBackground(false);
  scroll_->viewport()->installEventFilter(this);
  scroll_->setMinimumHeight(fontMetrics().lineSpacing() * 6);
  connect(form_, &ControlForm::edited, this, [this] {
    render();
    startChecks();
  });
  // A field that gets the focus is scrolled into view.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*before*/, QWidget* now) {
    if (now != nullptr && form_->isAncestorOf(now)) scroll_->ensureWidgetVisible(now, 8, 24);
  });
  return scroll_;
}

QWidget* JobDialogWindow::buildFindings() {
  findings_ = new FindingsModel(this);
  findingsView_ = new RowTable(this);
  findingsView_->setObjectName(QStringLiteral("lstFehler"));
  findingsView_->setAccessibleName(QStringLiteral("Befunde"));
  findingsView_->setModel(findings_);
  findingsView_->setItemDelegateForColumn(1, new PictureDelegate(findingsView_));
  findingsView_->setSelectionBehavior(QAbstractItemView::SelectRows);
  findingsView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  findingsView_->setShowGrid(false);
  findingsView_->setWordWrap(false);
  findingsView_->setTabKeyNavigation(false);
  findingsView_->verticalHeader()->hide();
  findingsView_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  findingsView_->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 6);
  findingsView_->horizontalHeader()->setStretchLastSection(true);
  findingsView_->horizontalHeader()->setHighlightSections(false);
  findingsView_->setColumnWidth(0, fontMetrics().horizontalAdvance(QStringLiteral("Zuordnung mm")));
  findingsView_->setColumnWidth(1, fontMetrics().horizontalAdvance(QStringLiteral("Status mm")));
  findingsView_->setMinimumHeight(fontMetrics().lineSpacing() * 5);
  connect(findingsView_, &QTableView::activated, this,
          [this](const QModelIndex& index) { goTo(ListedFinding(findings_->finding(index.row()))); });
  auto* copy = new QAction(QStringLiteral("&Kopieren"), findingsView_);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  connect(copy, &QAction::triggered, this, &JobDialogWindow::copyFindings);
  findingsView_->addAction(copy);
  findingsView_->setContextMenuPolicy(Qt::ActionsContextMenu);
  auto* part = new QWidget(this);
  findingsCaption_ = new QLabel(part);
  findingsCaption_->setObjectName(QStringLiteral("lblBefunde"));
  findingsCaption_->setBuddy(findingsView_);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(findingsCaption_);
  layout->addWidget(findingsView_, 1);
  return part;
}

QWidget* JobDialogWindow::buildGrid() {
  const JobGrid& grid = *dialog_.kind().grid;
  grid_ = new GridView(*dialog_.kind().grid, dialog_.customerSpecific(),
                       grid.editing() != nullptr ? captions::positions : captions::contracts, this);
  connect(grid_, &GridView::edited, this, [this] {
    render();
    startChecks();
  });
  connect(grid_, &GridView::detailsAsked, this, &JobDialogWindow::openDetails);
  return grid_;
}

QPushButton* JobDialogWindow::addButton(QLayout& row, const char* name, const QString& caption,
                                        void (JobDialogWindow::*pressed)()) {
  QPushButton* added = button(caption, QLatin1String(name));
  added->setEnabled(!dialog_.readOnly());
  connect(added, &QPushButton::clicked, this, pressed);
  row.addWidget(added);
  return added;
}

QLayout* JobDialogWindow::buildButtons() {
  auto* row = new QHBoxLayout;
  if (dialog_.kind().addresses != nullptr)
    addButton(*row, "cmdAdressen", toQt(captions::addresses), &JobDialogWindow::editAddresses);
  if (dialog_.canErase()) addButton(*row, "cmdDelete", toQt(captions::remove), &JobDialogWindow::erase);
  takeAll_ = addButton(*row, "cmdAllesUebernehmen", toQt(captions::takeAll), &JobDialogWindow::takeAllOver);
  takeAll_->setToolTip(
      QStringLiteral("Alle abweichenden Werte aus dem Stamm und alle ermittelten Preise übernehmen "
                     "(Umschalt+F6)"));
  progress_ = new QLabel(this);
  progress_->setObjectName(QStringLiteral("lblPruefung"));
  progress_->hide();
  row->addSpacing(12);
  row->addWidget(progress_, 1);
  row->addStretch(1);
  release_ = addButton(*row, "cmdFreigeben", toQt(captions::release), &JobDialogWindow::release);
  release_->setToolTip(QStringLiteral("Den Vorgang trotz seiner Befunde verarbeiten lassen"));
  save_ = addButton(*row, "cmdSpeichern", toQt(captions::save), &JobDialogWindow::saveAndClose);
  save_->setToolTip(QStringLiteral("Speichern und schließen (Strg+S)"));
  if (place_.isListed()) {
    QPushButton* next =
        addButton(*row, "cmdWeiter", toQt(captions::saveAndGoOn), &JobDialogWindow::saveAndGoOn);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this), &QShortcut::activated, next,
            &QPushButton::click);
    next->setToolTip(
        place_.hasNext()
            ? QStringLiteral("Speichern und den nächsten Vorgang öffnen (Strg+Eingabe)")
            : QStringLiteral("Speichern und schließen: Das ist der letzte Vorgang (Strg+Eingabe)"));
  }
  QPushButton* cancel =
      addButton(*row, "", dialog_.readOnly() ? QStringLiteral("Schließen") : toQt(captions::cancel),
                &JobDialogWindow::reject);
  cancel->setObjectName(toQt(dialog_.kind().cancelButton));
  cancel->setEnabled(true);
  return row;
}

void JobDialogWindow::setSizes() {
  const int line = fontMetrics().lineSpacing();
  const int formHeight = form_->sizeHint().height() + 4;
  const int findingsHeight = line * 8;
  int gridHeight = 0;
  if (grid_ != nullptr) gridHeight = grid_->isFolded() ? grid_->sizeHint().height() : line * 12;
  const QSize usual(form_->sizeHint().width() + line * 14,
                    formHeight + findingsHeight + gridHeight + line * 8);
  splitter_->setStretchFactor(0, 0);
  splitter_->setStretchFactor(1, 1);
  if (grid_ != nullptr) splitter_->setStretchFactor(2, 3);
  if (!memory_.restore(*this, splitter_, usual)) {
    QList<int> sizes{formHeight, findingsHeight};
    if (grid_ != nullptr) sizes.append(gridHeight);
    splitter_->setSizes(sizes);
  }
}

void JobDialogWindow::fitForm() { form_->fitWidth(scroll_->viewport()->width()); }

void JobDialogWindow::showEvent(QShowEvent* event) {
  FormWindow::showEvent(event);
  fitForm();
  // The list of findings has the initial focus; Enter moves to a finding's field.
  if (event->spontaneous() || dialog_.readOnly() || findings_->rowCount() == 0 ||
      findings_->finding(0).found.isHint())
    return;
  // Reasons of an earlier run come after findings that can be corrected.
  int first = 0;
  while (first + 1 < findings_->rowCount() && findings_->finding(first).found.rule == Rule::EarlierReasons)
    ++first;
  findingsView_->selectRow(first);
  findingsView_->setFocus(Qt::OtherFocusReason);
}

bool JobDialogWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == scroll_->viewport() && event->type() == QEvent::Resize) fitForm();
  return FormWindow::eventFilter(watched, event);
}

void JobDialogWindow::render() {
  const QString title = toQt(dialog_.title());
  setWindowTitle(title);
  title_->setText(title);
  QString notice = toQt(dialog_.readOnlyReason());
  if (notice.isEmpty()) notice = toQt(dialog_.notice());
  notice_->setText(notice);
  notice_->setVisible(!notice.isEmpty());
  form_->render();
  if (grid_ != nullptr) grid_->render();
  renderFindings();
  if (dialog_.loss() == JobLoss::Gone) {
    for (const char* name : {"cmdSpeichern", "cmdWeiter", "cmdDelete", "cmdFreigeben"})
      if (auto* button = findChild<QPushButton*>(QLatin1String(name))) button->setEnabled(false);
  }
  release_->setVisible(dialog_.canRelease() && !dialog_.released());
  const GridEditing* const editing = grid_ != nullptr ? dialog_.kind().grid->editing() : nullptr;
  takeAll_->setVisible(dialog_.mastersLeft() > 0 || (editing != nullptr && editing->foundLeft() > 0));
}

void JobDialogWindow::renderFindings() {
  std::optional<ListedFinding> current;
  if (findingsView_->currentIndex().isValid())
    current = findings_->finding(findingsView_->currentIndex().row());
  const int scrolled = findingsView_->verticalScrollBar()->value();
  findings_->show(dialog_.findings());
  seeing_.start();
  const int count = findings_->rowCount();
  findingsCaption_->setText(count == 0 ? QStringLiteral("Keine Be&funde")
                                       : toQt(captions::findings) + QStringLiteral(": %1").arg(count));
  if (current)
    if (const auto row = findings_->rowOf(*current)) findingsView_->selectRow(*row);
  findingsView_->verticalScrollBar()->setValue(scrolled);
}

void JobDialogWindow::commit() {
  if (grid_ != nullptr) grid_->commit();
  form_->commit();
}

bool JobDialogWindow::changed() { return dialog_.changed() || (grid_ != nullptr && grid_->hasRefused()); }

bool JobDialogWindow::mayLeave() {
  commit();
  // Refused texts cannot be saved; the clerk has been told so.
  if (dialog_.readOnly() || dialog_.loss() != JobLoss::None || !changed()) return true;
  QMessageBox box(QMessageBox::Question, toQt(defaultTitle),
                  QStringLiteral("Der Vorgang wurde geändert.\nSollen die Änderungen gespeichert werden?"),
                  QMessageBox::NoButton, this);
  QPushButton* saving = box.addButton(QStringLiteral("&Speichern"), QMessageBox::AcceptRole);
  QPushButton* dropping = box.addButton(QStringLiteral("&Verwerfen"), QMessageBox::DestructiveRole);
  QPushButton* back = box.addButton(QStringLiteral("&Zurück"), QMessageBox::RejectRole);
  box.setDefaultButton(saving);
  box.setEscapeButton(back);
  box.exec();
  if (box.clickedButton() == saving) return save();
  return box.clickedButton() == dropping;
}

bool JobDialogWindow::save() {
  commit();
  if (grid_ != nullptr && grid_->showRefused()) return false;
  // Findings of the last field would be closed with the window, unseen.
  const bool saved = dialog_.nothingNewSince(seen_) && dialog_.save();
  render();
  seen_ = dialog_.findings();
  if (dialog_.readAnewAsked()) done(Rejected);
  return saved;
}

void JobDialogWindow::saveAndClose() {
  if (save()) accept();
}

void JobDialogWindow::saveAndGoOn() {
  if (!save()) return;
  if (place_.hasNext()) end_ = DialogEnd::Next;
  accept();
}

void JobDialogWindow::leaveFor(DialogEnd end) {
  if (!mayLeave()) return;
  end_ = end;
  done(Rejected);
}

void JobDialogWindow::takeOver() {
  if (form_->takeCurrentMaster()) return;
  if (grid_ != nullptr && grid_->takeFound()) render();
}

void JobDialogWindow::takeAllOver() {
  commit();
  form_->takeMasters();
  if (grid_ != nullptr) grid_->takeAllFound();
  render();
  startChecks();
}

void JobDialogWindow::release() {
  commit();
  dialog_.release(true);
  // The button is hidden; the remaining step is saving.
  save_->setFocus(Qt::OtherFocusReason);
  render();
}

void JobDialogWindow::erase() {
  if (dialog_.erase()) return accept();
  render();
  if (dialog_.readAnewAsked()) done(Rejected);
}

void JobDialogWindow::editAddresses() {
  commit();
  const std::unique_ptr<AddressDialogPresenter> addresses = dialog_.kind().addresses->addresses();
  if (!editJobAddresses(this, context_.environment, *addresses)) return;
  dialog_.kind().addresses->takeAddresses(*addresses);
  render();
}

void JobDialogWindow::openDetails(std::size_t row) {
  commit();
  const JobGrid& grid = *dialog_.kind().grid;
  if (grid.editing() != nullptr) {
    const std::unique_ptr<Form> details = grid.editing()->details(row);
    showForm(this, context_.environment, *details, QStringLiteral("Position"), "DialogPosition");
  } else if (grid.jobs() != nullptr) {
    showJobDialog(this, context_, grid.jobs()->jobOf(row).jobId, {});
    dialog_.detailsClosed();
  }
  render();
  startChecks();
}

void JobDialogWindow::goTo(const ListedFinding& finding) {
  if (grid_ != nullptr && !finding.item().empty()) {
    if (const auto row = dialog_.kind().grid->rowOf(finding.item()))
      grid_->selectCell(*row, dialog_.kind().grid->columnOf(finding.code()));
  } else if (grid_ != nullptr && finding.control() == dialog_.kind().grid->name()) {
    grid_->selectCell(0, std::nullopt);
  } else {
    form_->focusControl(finding.control());
  }
}

void JobDialogWindow::step(int rows) {
  commit();
  const int count = findings_->rowCount();
  if (count == 0) return;
  const QModelIndex current = findingsView_->currentIndex();
  // The finding on which the cursor stands, but has not gone to, comes first.
  const bool fresh = findingsView_->hasFocus() || !current.isValid();
  const int from = current.isValid() ? current.row() : (rows > 0 ? -1 : 0);
  const int row = fresh && current.isValid() ? from : (from + rows + count) % count;
  findingsView_->selectRow(row);
  goTo(ListedFinding(findings_->finding(row)));
}

void JobDialogWindow::copyFindings() {
  QStringList lines;
  QModelIndexList rows = findingsView_->selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  for (const QModelIndex& row : rows) lines.append(findings_->line(row.row()));
  if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void JobDialogWindow::startChecks() {
  if (dialog_.checksLeft() == 0) return;
  checks_.start();
}

void JobDialogWindow::checkMore() {
  const std::size_t before = dialog_.checksLeft();
  dialog_.checkMore(checkedAtOnce);
  const std::size_t left = dialog_.checksLeft();
  // Checks that cannot proceed are abandoned; the notice says why.
  const bool over = left == 0 || left >= before;
  if (over) checks_.stop();
  const std::size_t all =
      std::max(left, dialog_.kind().grid != nullptr ? dialog_.kind().grid->rowCount() : left);
  progress_->setText(QStringLiteral("Positionen werden geprüft (%1 von %2)").arg(all - left).arg(all));
  progress_->setVisible(!over);
  if (grid_ != nullptr) grid_->render();
  renderFindings();
  if (over) render();
}

void JobDialogWindow::reject() {
  if (mayLeave()) FormWindow::reject();
}

void JobDialogWindow::done(int result) {
  checks_.stop();
  FormWindow::done(result);
}

} // namespace

ReleaseAnswer askReleaseInBox(std::string_view text, bool proposesRelease) {
  QMessageBox box(QMessageBox::Question, toQt(defaultTitle), toQt(text), QMessageBox::NoButton,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  QPushButton* const yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
  QPushButton* const no = box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
  QPushButton* const back = box.addButton(QStringLiteral("&Zurück"), QMessageBox::RejectRole);
  box.setDefaultButton(proposesRelease ? yes : no);
  box.setEscapeButton(back);
  box.exec();
  if (box.clickedButton() == yes) return ReleaseAnswer::Release;
  return box.clickedButton() == no ? ReleaseAnswer::Keep : ReleaseAnswer::Back;
}

DialogEnd showJobDialog(QWidget* parent, const DialogContext& context, std::string_view jobId,
                        const JobPlace& place) {
  while (const std::unique_ptr<JobDialogPresenter> dialog = openJobDialog(context, jobId)) {
    JobDialogWindow window(parent, context, *dialog, place);
    window.exec();
    if (!dialog->readAnewAsked()) return window.end();
  }
  return DialogEnd::Closed;
}

} // namespace qx
