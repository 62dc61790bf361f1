// The table of a job dialog with its buttons.
#pragma once

#ifndef Q_MOC_RUN // it stumbles over the umlauts of the job codes
#include "ui/job_grid.h"
#endif

#include <QWidget>

#include <cstddef>
#include <optional>
#include <string_view>

class QLabel;
class QModelIndex;
class QTableView;
class QToolButton;

namespace qx {

class GridModel;

/// Shows a grid, edits its cells, adds and removes rows, copies and pastes them as tab-separated lines.
class GridView final : public QWidget {
  Q_OBJECT

public:
  /// The grid must outlive the widget. The access key of the caption leads into the table.
  GridView(JobGrid& grid, bool customerSpecific, std::string_view caption, QWidget* parent = nullptr);

  /// Reads the current content of the grid.
  void render();
  /// Closes the open editor of a cell and commits its text.
  void commit();
  /// Moves the cursor to a cell, or to the first editable one of the row.
  void selectCell(std::size_t row, std::optional<std::size_t> column);
  /// Takes over what the master data give for the current row, or for all. False when there is nothing.
  bool takeFound();
  void takeAllFound();
  /// Moves the cursor to a cell whose text was refused. False when there is none.
  bool showRefused();
  bool hasRefused() const;
  /// Whether only the one line below the table is visible.
  bool isFolded() const;

signals:
  /// Emitted when cells were set, or rows added or removed.
  void edited();
  /// Emitted when the details button of a row was pressed.
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
  void focusOut(bool next);

  JobGrid& grid_;
  GridModel* model_;
  QTableView* table_;
  QLabel* summary_;
  QLabel* notice_;
  QToolButton* add_ = nullptr;
  QToolButton* remove_ = nullptr;
};

} // namespace qx
