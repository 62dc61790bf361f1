#include "ui/qt/lookup_window.h"

#include "platform/failure.h"
#include "settings/settings.h"
#include "ui/qt/row_table.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace qx {
namespace {

constexpr std::size_t pageSize = 100;
constexpr std::string_view settingsSection = "Auskunft";

constexpr bool moves(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

QVariant alignmentOf(const erp::LookupColumn& column) {
  const bool number = column.kind == erp::LookupColumnKind::Number;
  return QVariant::fromValue((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

} // namespace

LookupModel::LookupModel(erp::LookupPages& pages, Diagnostics& diagnostics, QObject* parent)
    : QAbstractTableModel(parent), pages_(pages), diagnostics_(diagnostics) {}

void LookupModel::search(const QString& text) {
  beginResetModel();
  search_ = fromQt(text);
  failure_.clear();
  next_ = erp::LookupPosition();
  rows_ = nextPage().rows;
  endResetModel();
  emit fetched();
}

erp::LookupPage LookupModel::nextPage() {
  try {
    erp::LookupPage page = pages_.page(search_, *next_, pageSize);
    next_ = page.next;
    return page;
  } catch (const std::exception& error) {
    next_.reset();
    failure_ =
        QStringLiteral("Die Einträge können nicht gelesen werden: ") + toQt(germanCause(error)).simplified();
    diagnostics_.report({pages_.source().name, error.what(), ""});
    return {};
  }
}

int LookupModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int LookupModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(pages_.source().columns.size());
}

QVariant LookupModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto column = static_cast<std::size_t>(index.column());
  switch (role) {
  case Qt::DisplayRole:
    return toQt(row(index.row())[column]).simplified();
  case Qt::ToolTipRole:
    return plainToolTip(toQt(row(index.row())[column]).simplified());
  case Qt::TextAlignmentRole:
    return alignmentOf(pages_.source().columns[column]);
  default:
    return {};
  }
}

QVariant LookupModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return QAbstractTableModel::headerData(section, orientation, role);
  const erp::LookupColumn& column = pages_.source().columns[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return toQt(column.caption);
  return role == Qt::TextAlignmentRole ? alignmentOf(column) : QVariant();
}

bool LookupModel::canFetchMore(const QModelIndex& parent) const {
  return !parent.isValid() && next_.has_value();
}

void LookupModel::fetchMore(const QModelIndex& parent) {
  if (!canFetchMore(parent)) return;
  erp::LookupPage page = nextPage();
  if (!page.rows.empty()) {
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(page.rows.size()) - 1);
    std::ranges::move(page.rows, std::back_inserter(rows_));
    endInsertRows();
  }
  emit fetched();
}

LookupWindow::LookupWindow(const LookupRequest& request, erp::LookupPages& pages, LocalSettings& settings,
                           Diagnostics& diagnostics, QWidget* parent)
    : QDialog(parent), model_(new LookupModel(pages, diagnostics, this)), search_(new QLineEdit(this)),
      table_(new RowTable(this)), hint_(new QLabel(table_->viewport())), notice_(new QLabel(this)),
      settings_(settings), diagnostics_(diagnostics), profile_(request.profile) {
  setObjectName(QStringLiteral("lookupWindow"));
  setWindowTitle(toQt(request.caption).trimmed());
  setModal(true);

  search_->setObjectName(QStringLiteral("lookupSearch"));
  search_->setAccessibleName(tr("Suchen"));
  search_->setClearButtonEnabled(true);
  QString captions;
  for (const std::string_view name : pages.source().searched) {
    const auto column = std::ranges::find(pages.source().columns, name, &erp::LookupColumn::name);
    if (column == pages.source().columns.end()) continue;
    if (!captions.isEmpty()) captions += QStringLiteral(", ");
    captions += toQt(column->caption);
  }
  search_->setPlaceholderText(tr("Anfang von %1").arg(captions));
  search_->installEventFilter(this);
  auto* label = new QLabel(tr("&Suchen:"), this);
  label->setObjectName(QStringLiteral("lookupSearchLabel"));
  label->setBuddy(search_);

  buildTable(pages.source());

  notice_->setObjectName(QStringLiteral("lookupNotice"));
  notice_->setWordWrap(true);
  notice_->setTextFormat(Qt::PlainText);
  notice_->setTextInteractionFlags(Qt::TextSelectableByMouse);

  auto* buttons = new QDialogButtonBox(this);
  buttons->setObjectName(QStringLiteral("lookupButtons"));
  accept_ = buttons->addButton(request.acceptCaption.empty() ? tr("Übernehmen") : toQt(request.acceptCaption),
                               QDialogButtonBox::AcceptRole);
  accept_->setObjectName(QStringLiteral("lookupAccept"));
  accept_->setDefault(true);
  auto* cancel = buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole);
  cancel->setObjectName(QStringLiteral("lookupCancel"));
  for (QPushButton* button : {accept_, cancel}) button->setAccessibleName(button->text());

  auto* top = new QHBoxLayout;
  top->addWidget(label);
  top->addWidget(search_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(table_, 1);
  layout->addWidget(notice_);
  layout->addWidget(buttons);
  setTabOrder(search_, table_);
  setTabOrder(table_, accept_);
  setTabOrder(accept_, cancel);

  connect(search_, &QLineEdit::textChanged, this, &LookupWindow::showRows);
  connect(table_, &QTableView::doubleClicked, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(model_, &LookupModel::fetched, this, &LookupWindow::showState);
  restoreSize();
  showRows();
  search_->setFocus();
}

void LookupWindow::buildTable(const erp::LookupSource& source) {
  table_->setObjectName(QStringLiteral("lookupTable"));
  table_->setAccessibleName(tr("Gefundene Einträge"));
  table_->setModel(model_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table_->setAlternatingRowColors(true);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setTabKeyNavigation(false);
  table_->setCornerButtonEnabled(false);

  QHeaderView* heights = table_->verticalHeader();
  heights->hide();
  heights->setSectionResizeMode(QHeaderView::Fixed);
  heights->setDefaultSectionSize(fontMetrics().height() + fontMetrics().height() / 2);
  QHeaderView* columns = table_->horizontalHeader();
  columns->setHighlightSections(false);
  columns->setStretchLastSection(true);
  for (std::size_t i = 0; i < source.columns.size(); ++i) {
    const erp::LookupColumn& column = source.columns[i];
    const int wanted = fontMetrics().horizontalAdvance(QLatin1Char('0')) * static_cast<int>(column.width);
    const int caption = columns->sectionSizeHint(static_cast<int>(i));
    table_->setColumnWidth(static_cast<int>(i), std::max(wanted, caption));
  }

  hint_->setObjectName(QStringLiteral("lookupHint"));
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  hint_->setTextFormat(Qt::PlainText);
  hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* layout = new QVBoxLayout(table_->viewport());
  layout->addWidget(hint_);
}

const erp::LookupRow* LookupWindow::current() const {
  const QModelIndex index = table_->currentIndex();
  return index.isValid() ? &model_->row(index.row()) : nullptr;
}

void LookupWindow::done(int result) {
  if (result == Accepted && current() == nullptr) return;
  saveSize();
  QDialog::done(result);
}

bool LookupWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == search_ && event->type() == QEvent::KeyPress &&
      moves(static_cast<QKeyEvent*>(event)->key())) {
    QCoreApplication::sendEvent(table_, event);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

void LookupWindow::showRows() {
  model_->search(search_->text());
  if (model_->rowCount() > 0) table_->selectRow(0);
  showState();
}

void LookupWindow::showState() {
  const bool empty = model_->rowCount() == 0;
  const QString text = search_->text().trimmed();
  if (empty && model_->failure().isEmpty())
    hint_->setText(text.isEmpty() ? tr("Es gibt keine Einträge.")
                                  : tr("Kein Eintrag beginnt mit „%1“.\nKürzen Sie den Suchtext.").arg(text));
  hint_->setVisible(empty && model_->failure().isEmpty());
  notice_->setText(model_->failure());
  notice_->setVisible(!model_->failure().isEmpty());
  accept_->setEnabled(current() != nullptr);
}

void LookupWindow::restoreSize() {
  // All columns and about fifteen rows.
  const QMargins around = layout()->contentsMargins();
  const int columns = table_->horizontalHeader()->length() + table_->verticalScrollBar()->sizeHint().width();
  QSize size(columns + 2 * table_->frameWidth() + around.left() + around.right(),
             table_->verticalHeader()->defaultSectionSize() * 19);
  try {
    const std::string stored = settings_.read(applicationName, settingsSection, profile_);
    const QStringList sides = toQt(stored).split(QLatin1Char('x'));
    const QSize kept(sides.value(0).toInt(), sides.value(1).toInt());
    if (!kept.isEmpty()) size = kept;
  } catch (const std::exception& error) {
    diagnostics_.report({"size of the lookup window", error.what(), ""});
  }
  const QSize available = screen()->availableGeometry().size();
  resize(size.boundedTo(available * 9 / 10));
}

void LookupWindow::saveSize() {
  try {
    settings_.write(applicationName, settingsSection, profile_,
                    std::to_string(width()) + "x" + std::to_string(height()));
  } catch (const std::exception& error) {
    diagnostics_.report({"size of the lookup window", error.what(), ""});
  }
}

std::vector<std::string> QtAuskunft::show(Session& session, const LookupRequest& request) {
  const erp::LookupSource* source = erp::findLookupSource(request.recordSource);
  if (source == nullptr) throw std::runtime_error("Es gibt keine Auskunft " + request.recordSource + ".");
  const std::vector<std::size_t> columns = erp::resultColumns(*source, request.resultFields);
  const std::shared_ptr<Connection> connection = session.connection();
  if (!connection) throw std::runtime_error("Die Auskunft hat keine Verbindung zur Datenbank.");

  erp::LookupPages pages(*connection, *source, request.criteria);
  LookupWindow window(request, pages, settings_, diagnostics_, QApplication::activeWindow());
  if (window.exec() != QDialog::Accepted) return {};
  std::vector<std::string> values;
  values.reserve(columns.size());
  for (const std::size_t column : columns) values.push_back((*window.current())[column]);
  return values;
}

} // namespace qx
