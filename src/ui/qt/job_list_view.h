// The list of jobs in the main window.
#pragma once

#include <QTableView>

class QLabel;

namespace qx {

/// A table of whole rows that shows a hint where it has none. The keys of the list are the window's business.
class JobListView final : public QTableView {
public:
  explicit JobListView(QWidget* parent);

  /// Widths and hidden columns as they are at first; call it once the model is set.
  void arrangeColumns();
  /// What stands in the empty list; the first line is the reason. Empty for none.
  void setHint(const QString& hint);
  /// The current row, its shown cells in the order shown and separated by tabs.
  QString currentRowText() const;

protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void placeHint();
  void colourHint();

  QLabel* hint_;
};

} // namespace qx
