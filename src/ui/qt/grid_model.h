// The rows of a job grid for a table view.
#pragma once

#ifndef Q_MOC_RUN // it stumbles over the umlauts of the job codes
#include "ui/job_grid.h"
#endif

#include <QAbstractTableModel>

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace qx {

/// Shows the grid of a dialog; columns keep their numbers. A refused text stays visible in its cell, with the
/// reason, until another one is accepted or it is discarded.
class GridModel final : public QAbstractTableModel {
  Q_OBJECT

public:
  /// The grid must outlive the model.
  explicit GridModel(JobGrid& grid, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  JobGrid& grid() { return grid_; }
  const GridColumn& column(int column) const { return grid_.columns()[static_cast<std::size_t>(column)]; }
  /// Reads the current content of the grid.
  void refresh();
  int addRow();
  void removeRow(int row);
  bool isRefused(const QModelIndex& index) const;
  /// Shows the value of the cell again.
  void dropRefused(const QModelIndex& index);
  /// The index of a cell whose text was refused; invalid when there is none.
  QModelIndex firstRefused() const;
  /// The reason why the text of a cell was refused.
  QString reason(const QModelIndex& index) const;

signals:
  /// Emitted when a cell was set. `refusal` is empty when its text was accepted.
  void cellSet(const QString& refusal);

private:
  struct Refused {
    QString text;
    QString reason;
  };
  using CellIndex = std::pair<int, int>; ///< row, column

  /// What the editor of a cell begins with.
  std::string editText(std::size_t row, std::size_t column) const;
  const Refused* refusedAt(const QModelIndex& index) const;
  static QVariant shownText(const GridCell& cell, GridColumnKind kind, const Refused* refused);
  static QVariant decoration(const GridCell& cell, GridColumnKind kind, const Refused* refused);
  /// The tool tip, which screen readers also use for a picture.
  static QVariant explanation(const GridCell& cell, GridColumnKind kind, const Refused* refused);

  JobGrid& grid_;
  int rows_ = 0; ///< as the views know it
  std::map<CellIndex, Refused> refused_;
};

} // namespace qx
