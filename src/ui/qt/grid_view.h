// The table of a job dialog with what belongs to it.
#pragma once

#ifndef Q_MOC_RUN // it stumbles over the umlauts of the job codes
#include "ui/job_grid.h"
#endif

#include <QWidget>

#include <cstddef>

class QLabel;
class QModelIndex;
class QTableView;
class QToolButton;

namespace qx {

class GridModel;

/// Shows a grid, edits its cells, adds and removes rows, copies and pastes them as tab separated lines.
class GridView final : public QWidget {
  Q_OBJECT

public:
  /// The grid outlives the widget.
  GridView(JobGrid& grid, bool customerSpecific, QWidget* parent = nullptr);

  /// Takes over whatever the grid holds now.
  void render();
  /// Ends the editor of a cell and takes its text.
  void commit();
  /// Puts the cursor into a row.
  void selectRow(std::size_t row);
  /// Puts the cursor into a cell whose text was refused. False when there is none.
  bool showRefused();
  bool hasRefused() const;
  /// There is nothing but one line to be seen.
  bool isFolded() const;

signals:
  /// Cells were set, or rows added or removed.
  void edited();
  /// The details button of a row was pressed.
  void detailsAsked(std::size_t row);

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void addActions();
  void setWidths();
  void fold();
  void addRow();
  void lookUp(const QModelIndex& cell);
  void removeRows();
  void copy();
  void paste();
  void showNotice(const QString& notice);
  void showSummary();
  int firstEditable() const;
  void setCurrent(int row, int column);

  JobGrid& grid_;
  GridModel* model_;
  QTableView* table_;
  QLabel* summary_;
  QLabel* notice_;
  QToolButton* add_ = nullptr;
  QToolButton* remove_ = nullptr;
};

} // namespace qx
