// The list of jobs in the main window, and the pane below it.
#pragma once

#include "ui/qt/row_table.h"

#include <QPlainTextEdit>
#include <QWidget>

class QLabel;

namespace qx {

/// A table of whole rows that shows a hint where it has none. The window handles the keys of the list.
class JobListView final : public RowTable {
public:
  explicit JobListView(QWidget* parent);

  /// Sets the initial widths and hidden columns; call it once the model is set.
  void arrangeColumns();
  /// The text of the empty list; the first line is the reason. Empty for none.
  void setHint(const QString& hint);
  /// The visible cells of the marked rows, a line for each, in visible order and separated by tabs.
  QString markedText() const;
  /// Makes the column of the cell cursor, which the arrow keys move, wider, or narrower, by some letters.
  void widenCurrent(int letters);
  /// Moves that column to the right, or to the left, by some places.
  void moveCurrent(int places);
  /// Makes every visible column as wide as its texts, within limits.
  void fitColumns();

protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void placeHint();
  void colourHint();

  QLabel* hint_;
};

/// Shows the reasons of a job's state, line by line, for reading and copying.
class JobDetailsPane final : public QWidget {
public:
  explicit JobDetailsPane(QWidget* parent);

  /// Keeps selection and scroll position while the text stays the same.
  void setText(const QString& text);

private:
  QPlainTextEdit* text_;
};

} // namespace qx
