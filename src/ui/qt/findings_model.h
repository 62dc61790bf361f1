// The findings of a job dialog for a table view.
#pragma once

#include "ui/finding_list.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace qx {

/// Columns "Zuordnung", "Status" (a picture) and "Fehlertext", in the order given.
class FindingsModel final : public QAbstractTableModel {
public:
  using QAbstractTableModel::QAbstractTableModel;

  void show(std::vector<ListedFinding> findings);
  const ListedFinding& finding(int row) const { return findings_[static_cast<std::size_t>(row)]; }
  /// The row of the finding of this code and position.
  std::optional<int> rowOf(const ListedFinding& finding) const;
  /// A finding as a single line.
  QString line(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
  std::vector<ListedFinding> findings_;
};

} // namespace qx
