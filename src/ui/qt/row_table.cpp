#include "ui/qt/row_table.h"

#include <QPainter>
#include <QStyledItemDelegate>

namespace qx {
namespace {

/// The toolkit covers the cell that has the focus with a colour that makes its text hard to read.
class RowDelegate final : public QStyledItemDelegate {
public:
  RowDelegate(CellCursor cursor, QObject* parent) : QStyledItemDelegate(parent), cursor_(cursor) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    cell.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, cell, index);
    if (cursor_ == CellCursor::Hidden || !option.state.testFlag(QStyle::State_HasFocus)) return;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setPen(
        QPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text), 1, Qt::DotLine));
    painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    painter->restore();
  }

private:
  CellCursor cursor_;
};

} // namespace

RowTable::RowTable(QWidget* parent, CellCursor cursor) : QTableView(parent) {
  setItemDelegate(new RowDelegate(cursor, this));
}

} // namespace qx
