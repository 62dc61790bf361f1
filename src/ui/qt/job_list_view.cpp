#include "ui/qt/job_list_view.h"

#include "ui/job_view_terms.h"
#include "ui/qt/grid_delegate.h"
#include "ui/qt/text.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QStringList>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cstdlib>

namespace qx {

JobListView::JobListView(QWidget* parent)
    : RowTable(parent, CellCursor::Shown), hint_(new QLabel(viewport())) {
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setContextMenuPolicy(Qt::CustomContextMenu);
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  horizontalHeader()->setSectionsMovable(true);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  setItemDelegateForColumn(static_cast<int>(JobColumn::JobType), new PictureDelegate(this));
  hint_->setObjectName(QStringLiteral("lblEmptyHint"));
  hint_->setAlignment(Qt::AlignCenter);
  colourHint();
  hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
  hint_->hide();
}

void JobListView::arrangeColumns() {
  const int letter = fontMetrics().averageCharWidth();
  // In characters; the last column takes the remaining width.
  constexpr std::array<int, jobColumnCount> widths{0, 36, 20, 13, 11, 52, 34, 13, 28};
  for (std::size_t column = 1; column < jobColumnCount; ++column)
    setColumnWidth(static_cast<int>(column), widths[column] * letter);
  setColumnWidth(0, verticalHeader()->defaultSectionSize() + 2 * letter);
  setColumnHidden(static_cast<int>(JobColumn::JobID), true);
}

void JobListView::setHint(const QString& hint) {
  hint_->setText(hint);
  hint_->setVisible(!hint.isEmpty());
  placeHint();
}

QString JobListView::markedText() const {
  QModelIndexList rows = selectionModel()->selectedRows();
  if (rows.isEmpty() && currentIndex().isValid()) rows.append(currentIndex());
  std::sort(rows.begin(), rows.end());
  QStringList lines;
  for (const QModelIndex& row : rows) {
    QStringList cells;
    for (int visual = 0; visual < horizontalHeader()->count(); ++visual) {
      const int column = horizontalHeader()->logicalIndex(visual);
      const QModelIndex cell = row.siblingAtColumn(column);
      const QVariant text = cell.data(Qt::DisplayRole);
      if (!isColumnHidden(column))
        cells += (text.isValid() ? text : cell.data(Qt::AccessibleTextRole)).toString().simplified();
    }
    lines += cells.join(QLatin1Char('\t'));
  }
  return lines.join(QLatin1Char('\n'));
}

void JobListView::widenCurrent(int letters) {
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  if (column <= 0 || isColumnHidden(column)) return;
  const int letter = fontMetrics().averageCharWidth();
  setColumnWidth(column, std::max(columnWidth(column) + letters * letter, 4 * letter));
}

void JobListView::moveCurrent(int places) {
  QHeaderView& head = *horizontalHeader();
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  if (column <= 0 || isColumnHidden(column)) return;
  int place = head.visualIndex(column);
  const int step = places < 0 ? -1 : 1;
  for (int left = std::abs(places); left > 0; --left) {
    int next = place + step;
    while (next >= 0 && next < head.count() && isColumnHidden(head.logicalIndex(next))) next += step;
    if (next < 0 || next >= head.count()) break;
    place = next;
  }
  head.moveSection(head.visualIndex(column), place);
  scrollTo(currentIndex());
}

void JobListView::fitColumns() {
  const int letter = fontMetrics().averageCharWidth();
  constexpr int least = 8;
  constexpr int most = 50;
  for (int column = 1; column < horizontalHeader()->count(); ++column) {
    if (isColumnHidden(column)) continue;
    resizeColumnToContents(column);
    setColumnWidth(column, std::clamp(columnWidth(column) + letter, least * letter, most * letter));
  }
}

void JobListView::resizeEvent(QResizeEvent* event) {
  RowTable::resizeEvent(event);
  placeHint();
}

void JobListView::changeEvent(QEvent* event) {
  RowTable::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) colourHint();
}

void JobListView::colourHint() {
  QPalette colours = hint_->palette();
  colours.setColor(QPalette::WindowText, quietText(palette()));
  hint_->setPalette(colours);
}

void JobListView::placeHint() { hint_->setGeometry(viewport()->rect()); }

JobDetailsPane::JobDetailsPane(QWidget* parent) : QWidget(parent), text_(new QPlainTextEdit(this)) {
  text_->setObjectName(QStringLiteral("txtDetails"));
  text_->setAccessibleName(QStringLiteral("Befunde des Vorgangs"));
  text_->setReadOnly(true);
  // Readable by keyboard without capturing the Tab key.
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setTabChangesFocus(true);
  auto* caption = new QLabel(QStringLiteral("Be&funde des Vorgangs"), this);
  caption->setBuddy(text_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(caption);
  layout->addWidget(text_);
}

void JobDetailsPane::setText(const QString& text) {
  if (text_->toPlainText() != text) text_->setPlainText(text);
}

} // namespace qx
