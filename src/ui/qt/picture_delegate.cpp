#include "ui/qt/picture_delegate.h"

#include <QApplication>
#include <QPainter>

namespace qx {

void PictureDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const QIcon picture = cell.icon;
  cell.icon = {};
  cell.features &= ~QStyleOptionViewItem::HasDecoration;
  const QStyle* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
  // Never tinted: the colour has a meaning.
  picture.paint(painter,
                QStyle::alignedRect(cell.direction, Qt::AlignCenter, cell.decorationSize, cell.rect));
}

} // namespace qx
