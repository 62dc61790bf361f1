#include "ui/qt/grid_view.h"

#include "ui/qt/grid_delegate.h"
#include "ui/qt/grid_model.h"
#include "ui/qt/text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdint>
#include <set>

namespace qx {
namespace {

constexpr int measuredRows = 100; ///< whose texts determine the initial column widths
constexpr int widestColumn = 260;
constexpr int shownReasons = 3;

/// Tab moves from cell to cell and leaves the table after the last and (backwards) before the first one.
class CellTable final : public QTableView {
public:
  using QTableView::QTableView;

protected:
  bool focusNextPrevChild(bool next) override {
    // Bypasses the view, which would handle the key itself. NOLINTNEXTLINE(bugprone-parent-virtual-call)
    if (atEnd(next)) return QWidget::focusNextPrevChild(next);
    return QTableView::focusNextPrevChild(next);
  }
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override {
    const bool beyond = (hint == QAbstractItemDelegate::EditNextItem && atEnd(true)) ||
                        (hint == QAbstractItemDelegate::EditPreviousItem && atEnd(false));
    QTableView::closeEditor(editor, beyond ? QAbstractItemDelegate::NoHint : hint);
  }

private:
  bool atEnd(bool last) const {
    const QModelIndex current = currentIndex();
    if (!current.isValid()) return true;
    if (current.row() != (last ? model()->rowCount() - 1 : 0)) return false;
    const int step = last ? 1 : -1;
    for (int column = current.column() + step; column >= 0 && column < model()->columnCount(); column += step)
      if (!isColumnHidden(column)) return false;
    return true;
  }
};

QToolButton* rowButton(QWidget* parent, const QString& text, const QString& name, const QString& tip) {
  auto* button = new QToolButton(parent);
  button->setText(text);
  button->setObjectName(name);
  button->setToolTip(tip);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

} // namespace

GridView::GridView(JobGrid& grid, bool customerSpecific, std::string_view caption, QWidget* parent)
    : QWidget(parent), grid_(grid), model_(new GridModel(grid, this)), table_(new CellTable(this)),
      summary_(new QLabel(this)), notice_(new QLabel(this)) {
  table_->setObjectName(toQt(grid.name()));
  table_->setModel(model_);
  auto* delegate = new GridDelegate(grid, table_);
  table_->setItemDelegate(delegate);
  table_->setAlternatingRowColors(true);
  table_->setWordWrap(false);
  table_->setTabKeyNavigation(grid.editable());
  table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().lineSpacing() + 8);
  table_->horizontalHeader()->setHighlightSections(false);
  table_->installEventFilter(this);
  for (int column = 0; column < model_->columnCount(); ++column) {
    const GridColumn& spec = model_->column(column);
    table_->setColumnHidden(column, spec.hidden || (spec.customerSpecific && !customerSpecific));
  }
  setWidths();

  notice_->setTextFormat(Qt::PlainText);
  notice_->setWordWrap(true);
  notice_->setObjectName(QStringLiteral("lblTabelleHinweis"));
  summary_->setObjectName(QStringLiteral("lblTabelleSumme"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* heading = new QLabel(toQt(caption), this);
  heading->setBuddy(table_);
  layout->setSpacing(2);
  layout->addWidget(heading);
  layout->addWidget(table_, 1);
  layout->addWidget(notice_);
  auto* below = new QHBoxLayout;
  if (grid.editable()) {
    add_ = rowButton(this, QStringLiteral("Zeile anfügen"), QStringLiteral("cmdZeileNeu"),
                     QStringLiteral("Eine leere Zeile anfügen (Einfg)"));
    remove_ = rowButton(this, QStringLiteral("Zeile entfernen"), QStringLiteral("cmdZeileWeg"),
                        QStringLiteral("Die markierten Zeilen entfernen (Strg+Entf)"));
    connect(add_, &QToolButton::clicked, this, &GridView::addRow);
    connect(remove_, &QToolButton::clicked, this, &GridView::removeRows);
    below->addWidget(add_);
    below->addWidget(remove_);
  }
  below->addStretch(1);
  below->addWidget(summary_);
  layout->addLayout(below);
  addActions();

  connect(model_, &GridModel::cellSet, this, [this](const QString& refusal) {
    showNotice(refusal);
    showSummary();
    emit edited();
  });
  connect(delegate, &GridDelegate::closeEditor, this,
          [this](QWidget* /*editor*/, QAbstractItemDelegate::EndEditHint hint) {
            if (hint != QAbstractItemDelegate::RevertModelCache) return;
            model_->dropRefused(table_->currentIndex());
            showNotice({});
          });
  connect(table_, &QTableView::clicked, this, [this](const QModelIndex& index) {
    if (model_->column(index.column()).kind == GridColumnKind::Button)
      emit detailsAsked(static_cast<std::size_t>(index.row()));
  });
  showNotice({});
  showSummary();
  fold();
}

void GridView::addActions() {
  enum class Needs : std::uint8_t { AnyGrid, EditableGrid };
  const auto action = [this](const QString& text, const QKeySequence& keys, void (GridView::*member)(),
                             Needs needs) {
    if (needs == Needs::EditableGrid && !grid_.editable()) return;
    auto* entry = new QAction(text, table_);
    entry->setShortcut(keys);
    // In the editor of a cell these keys edit its text.
    entry->setShortcutContext(Qt::WidgetShortcut);
    connect(entry, &QAction::triggered, this, member);
    table_->addAction(entry);
  };
  action(QStringLiteral("&Kopieren"), QKeySequence::Copy, &GridView::copy, Needs::AnyGrid);
  action(QStringLiteral("&Einfügen"), QKeySequence::Paste, &GridView::paste, Needs::EditableGrid);
  action(QStringLiteral("Zeile &anfügen"), QKeySequence(Qt::Key_Insert), &GridView::addRow,
         Needs::EditableGrid);
  action(QStringLiteral("Zeile ent&fernen"), QKeySequence(Qt::CTRL | Qt::Key_Delete), &GridView::removeRows,
         Needs::EditableGrid);
  table_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void GridView::setWidths() {
  const QFontMetrics metrics = table_->fontMetrics();
  table_->horizontalHeader()->setResizeContentsPrecision(measuredRows);
  table_->resizeColumnsToContents();
  for (int column = 0; column < model_->columnCount(); ++column) {
    const GridColumnKind kind = model_->column(column).kind;
    int width = table_->columnWidth(column);
    if (kind == GridColumnKind::LongText) width = metrics.averageCharWidth() * 32;
    if (kind == GridColumnKind::Text) width = std::max(width, metrics.averageCharWidth() * 12);
    table_->setColumnWidth(column, std::min(width, widestColumn));
  }
}

void GridView::render() {
  const QModelIndex before = table_->currentIndex();
  model_->refresh();
  if (before.isValid() && !table_->currentIndex().isValid())
    setCurrent(std::min(before.row(), model_->rowCount() - 1), before.column());
  if (remove_ != nullptr) remove_->setEnabled(model_->rowCount() > 0);
  showSummary();
  fold();
}

/// An empty read-only table shows only the line below it.
void GridView::fold() {
  const bool folded = isFolded();
  table_->setVisible(!folded);
  setMaximumHeight(folded ? sizeHint().height() : QWIDGETSIZE_MAX);
}

bool GridView::isFolded() const { return !grid_.editable() && model_->rowCount() == 0; }

void GridView::setCurrent(int row, int column) {
  if (row >= 0 && row < model_->rowCount()) table_->setCurrentIndex(model_->index(row, column));
}

void GridView::focusOut(bool next) {
  QWidget* widget = table_;
  do widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
  while (widget != table_ &&
         (table_->isAncestorOf(widget) || widget->focusProxy() != nullptr || !widget->isVisible() ||
          !widget->isEnabled() || (widget->focusPolicy() & Qt::TabFocus) == 0));
  widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

void GridView::commit() {
  const QWidget* focus = QApplication::focusWidget();
  // An editor that loses the focus commits its text.
  if (focus != nullptr && focus != table_ && table_->isAncestorOf(focus)) table_->setFocus();
}

bool GridView::takeFound() {
  const QModelIndex current = table_->currentIndex();
  if (!grid_.editable() || !current.isValid()) return false;
  commit();
  if (!grid_.editing()->takeFound(static_cast<std::size_t>(current.row()))) return false;
  render();
  emit edited();
  return true;
}

void GridView::takeAllFound() {
  if (!grid_.editable()) return;
  for (std::size_t row = 0; row < grid_.rowCount(); ++row) grid_.editing()->takeFound(row);
  render();
  emit edited();
}

void GridView::selectCell(std::size_t row, std::optional<std::size_t> column) {
  setCurrent(static_cast<int>(row), column ? static_cast<int>(*column) : firstEditable());
  table_->scrollTo(table_->currentIndex());
  table_->setFocus(Qt::OtherFocusReason);
}

bool GridView::hasRefused() const { return model_->firstRefused().isValid(); }

bool GridView::showRefused() {
  const QModelIndex cell = model_->firstRefused();
  if (!cell.isValid()) return false;
  table_->setCurrentIndex(cell);
  table_->setFocus(Qt::OtherFocusReason);
  showNotice(model_->reason(cell));
  return true;
}

/// The column for the cursor in a row that is looked for.
int GridView::firstEditable() const {
  for (int column = 0; column < model_->columnCount(); ++column)
    if (!table_->isColumnHidden(column) && model_->column(column).editable) return column;
  return 0;
}

void GridView::addRow() {
  const int row = model_->addRow();
  setCurrent(row, firstEditable());
  table_->scrollToBottom();
  table_->setFocus(Qt::OtherFocusReason);
  render();
  emit edited();
}

void GridView::lookUp(const QModelIndex& cell) {
  if (!grid_.editable()) return;
  if (!grid_.editing()->lookUp(static_cast<std::size_t>(cell.row()), static_cast<std::size_t>(cell.column())))
    return;
  model_->dropRefused(cell);
  showNotice({});
  render();
  emit edited();
}

void GridView::removeRows() {
  std::set<int, std::greater<>> rows;
  for (const QModelIndex& index : table_->selectionModel()->selectedIndexes()) rows.insert(index.row());
  if (rows.empty() && table_->currentIndex().isValid()) rows.insert(table_->currentIndex().row());
  if (rows.empty()) return;
  for (const int row : rows) model_->removeRow(row);
  setCurrent(std::min(*rows.rbegin(), model_->rowCount() - 1), firstEditable());
  showNotice({});
  render();
  emit edited();
}

void GridView::copy() {
  QModelIndexList cells = table_->selectionModel()->selectedIndexes();
  std::sort(cells.begin(), cells.end());
  QString text;
  int row = -1;
  for (const QModelIndex& cell : cells) {
    const GridColumnKind kind = model_->column(cell.column()).kind;
    if (table_->isColumnHidden(cell.column()) || kind == GridColumnKind::Button) continue;
    if (row >= 0) text += cell.row() == row ? QLatin1Char('\t') : QLatin1Char('\n');
    row = cell.row();
    // A cell is one field of one line, whatever it contains.
    text += kind == GridColumnKind::Picture ? cell.data(Qt::AccessibleTextRole).toString().simplified()
                                            : cell.data(Qt::EditRole).toString().simplified();
  }
  if (row >= 0) QApplication::clipboard()->setText(text);
}

void GridView::paste() {
  const QString text = QApplication::clipboard()->text();
  if (text.isEmpty()) return;
  const QModelIndex current = table_->currentIndex();
  const int row = current.isValid() ? current.row() : model_->rowCount();
  const int column = current.isValid() ? current.column() : firstEditable();
  const QString refused = toQt(
      grid_.editing()->paste(static_cast<std::size_t>(row), static_cast<std::size_t>(column), fromQt(text)));
  render();
  setCurrent(row, column);
  QStringList reasons = refused.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  const qsizetype more = reasons.size() - shownReasons;
  if (more > 0) {
    reasons.resize(shownReasons);
    reasons.append(QStringLiteral("und %1 weitere").arg(more));
  }
  showNotice(reasons.isEmpty() ? QString()
                               : QStringLiteral("Nicht übernommen: ") + reasons.join(QStringLiteral("; ")));
  notice_->setToolTip(plainToolTip(refused.trimmed()));
  emit edited();
}

void GridView::showNotice(const QString& notice) {
  notice_->setText(notice);
  notice_->setToolTip({});
  notice_->setVisible(!notice.isEmpty());
}

void GridView::showSummary() {
  const QString text = toQt(grid_.summary());
  summary_->setText(text);
  summary_->setVisible(!text.isEmpty());
}

bool GridView::eventFilter(QObject* watched, QEvent* event) {
  // Ignores keys that an open editor passes on.
  if (watched == table_ && event->type() == QEvent::KeyPress && table_->hasFocus()) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const QModelIndex current = table_->currentIndex();
    const bool pressed = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    if (pressed && current.isValid() && model_->column(current.column()).kind == GridColumnKind::Button) {
      emit detailsAsked(static_cast<std::size_t>(current.row()));
      return true;
    }
    const auto modifiers = static_cast<QKeyEvent*>(event)->modifiers();
    if ((key == Qt::Key_Tab || key == Qt::Key_Backtab) && modifiers.testFlag(Qt::ControlModifier)) {
      // Out of the table at once, from any cell.
      focusOut(key == Qt::Key_Tab);
      return true;
    }
    if (key == Qt::Key_F4 && current.isValid()) {
      lookUp(current);
      return true;
    }
    // Enter opens the cell, as in a spreadsheet.
    if (key != Qt::Key_Space && pressed && current.flags().testFlag(Qt::ItemIsEditable)) {
      table_->edit(current);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

} // namespace qx
