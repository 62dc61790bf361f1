// How the cells of tables are drawn and edited.
#pragma once

#include "ui/job_grid.h"

#include <QStyledItemDelegate>

namespace qx {

/// Draws the picture in the middle of its cell in its own colours, on a selected one on the background of the
/// table.
class PictureDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// Gives each kind of column its editor. A check box is toggled in place; a long text is edited in a
/// multi-line editor over the cell.
class GridDelegate final : public PictureDelegate {
public:
  explicit GridDelegate(JobGrid& grid, QObject* parent = nullptr) : PictureDelegate(parent), grid_(grid) {}

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
  bool eventFilter(QObject* editor, QEvent* event) override;

protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
  GridColumnKind kind(const QModelIndex& index) const {
    return grid_.columns()[static_cast<std::size_t>(index.column())].kind;
  }

  JobGrid& grid_;
};

} // namespace qx
