// Cells that hold a picture and nothing else.
#pragma once

#include <QStyledItemDelegate>

namespace qx {

/// Draws the picture in the middle of its cell.
class PictureDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace qx
