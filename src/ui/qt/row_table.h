// A table of whole rows.
#pragma once

#include <QTableView>

namespace qx {

/// Home and End go to the first and the last row, where the toolkit would move an invisible cell cursor.
class RowTable : public QTableView {
public:
  using QTableView::QTableView;

protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override {
    const bool toEnd = action == MoveHome || action == MoveEnd;
    return QTableView::moveCursor(action, toEnd ? modifiers | Qt::ControlModifier : modifiers);
  }
};

} // namespace qx
