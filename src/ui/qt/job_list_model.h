// The rows of the job list as the toolkit's views read them.
#pragma once

#include "ui/job_view_terms.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <map>
#include <string_view>
#include <vector>

namespace qx {

/// One row per listed job, with the columns of `JobColumn`. Read-only.
class JobListModel final : public QAbstractTableModel {
public:
  explicit JobListModel(QObject* parent);

  void setRows(std::vector<JobListRow> rows);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
  std::vector<JobListRow> rows_;
  std::map<std::string_view, QIcon> pictures_;
  std::map<std::string_view, QIcon> released_; ///< the same with the mark of a released job
};

} // namespace qx
