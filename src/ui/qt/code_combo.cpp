#include "ui/qt/code_combo.h"

#include "model/text.h"
#include "ui/qt/text.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTreeView>

namespace qx {
namespace {

constexpr int codeRole = Qt::UserRole + 1;
constexpr int searchRole = Qt::UserRole + 2;

/// Finds rows by text and code and puts the shown text into the field.
class RowCompleter final : public QCompleter {
public:
  RowCompleter(QAbstractItemModel* rows, QObject* parent) : QCompleter(rows, parent) {
    setCompletionRole(searchRole);
    setCaseSensitivity(Qt::CaseInsensitive);
    setFilterMode(Qt::MatchContains);
  }
  QString pathFromIndex(const QModelIndex& index) const override {
    return index.data(Qt::DisplayRole).toString();
  }
};

} // namespace

CodeCombo::CodeCombo(bool editable, QWidget* parent)
    : QComboBox(parent), rows_(new QStandardItemModel(this)) {
  setModel(rows_);
  setEditable(editable);
  setInsertPolicy(NoInsert);
  setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(8);
  setMaxVisibleItems(16);
  auto* table = new QTreeView(this);
  table->setRootIsDecorated(false);
  table->setUniformRowHeights(true);
  table->setAllColumnsShowFocus(true);
  table->header()->hide();
  table->header()->setStretchLastSection(true);
  setView(table);
  if (editable) setCompleter(new RowCompleter(rows_, this));
}

void CodeCombo::offer(const ComboContent& content) {
  if (filled_ && offered_.rows == content.rows.rows) return;
  filled_ = true;
  offered_ = content.rows;
  const QSignalBlocker quiet(this);
  const std::size_t shown = content.hiddenColumn == 0 ? 1 : 0;
  const auto code = static_cast<std::size_t>(content.codeColumn);
  rows_->clear();
  for (const auto& row : offered_.rows) {
    const QString text = toQt(row[shown]);
    const QString other = toQt(row[1 - shown]);
    auto* first = new QStandardItem(text);
    first->setData(toQt(row[code]), codeRole);
    first->setData(text + QLatin1Char(' ') + other, searchRole);
    // Fixed items need no second column.
    if (isEditable())
      rows_->appendRow({first, new QStandardItem(other)});
    else
      rows_->appendRow(first);
  }
  setCurrentIndex(-1);
}

void CodeCombo::showCode(std::string_view code) {
  const QSignalBlocker quiet(this);
  for (int row = 0; row < count(); ++row) {
    if (!equalCodes(fromQt(itemData(row, codeRole).toString()), code)) continue;
    setCurrentIndex(row);
    if (isEditable()) setEditText(itemText(row));
    return;
  }
  setCurrentIndex(-1);
  if (isEditable()) setEditText(toQt(code));
}

std::string CodeCombo::code() const {
  const int row = currentIndex();
  const bool chosen = row >= 0 && currentText() == itemText(row);
  return fromQt(chosen ? itemData(row, codeRole).toString() : isEditable() ? currentText() : QString());
}

void CodeCombo::complete() {
  constexpr qsizetype shortest = 2; // a single letter is a code that is not known yet
  const QString typed = currentText().trimmed();
  if (!isEditable() || typed.size() < shortest) return;
  int match = -1;
  for (int row = 0; row < count(); ++row) {
    const auto means = [&](const QString& text) { return equalCodes(fromQt(text), fromQt(typed)); };
    if (means(itemText(row)) || means(itemData(row, codeRole).toString())) return;
    if (!itemData(row, searchRole).toString().contains(typed, Qt::CaseInsensitive)) continue;
    if (match >= 0) return;
    match = row;
  }
  if (match < 0) return;
  const QSignalBlocker quiet(this);
  setCurrentIndex(match);
  setEditText(itemText(match));
}

void CodeCombo::showPopup() {
  auto* table = static_cast<QTreeView*>(view());
  int width = 0;
  for (int column = 0; column < rows_->columnCount(); ++column) {
    table->resizeColumnToContents(column);
    table->setColumnWidth(column, table->columnWidth(column) + fontMetrics().averageCharWidth() * 2);
    width += table->columnWidth(column);
  }
  table->setMinimumWidth(std::max(this->width(), width + table->verticalScrollBar()->sizeHint().width()));
  QComboBox::showPopup();
}

} // namespace qx
