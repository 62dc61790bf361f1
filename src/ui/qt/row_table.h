// A table of whole rows.
#pragma once

#include <QTableView>

#include <cstdint>

namespace qx {

/// Whether the cell that the arrow keys have reached is outlined.
enum class CellCursor : std::uint8_t { Hidden, Shown };

/// Home and End go to the first and the last row, where the toolkit would move an invisible cell cursor.
class RowTable : public QTableView {
public:
  explicit RowTable(QWidget* parent, CellCursor cursor = CellCursor::Hidden);

protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override {
    const bool toEnd = action == MoveHome || action == MoveEnd;
    return QTableView::moveCursor(action, toEnd ? modifiers | Qt::ControlModifier : modifiers);
  }
};

} // namespace qx
