#include "ui/qt/job_list_model.h"

#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <utility>

namespace qx {

JobListModel::JobListModel(QObject* parent) : QAbstractTableModel(parent) {
  for (const std::string_view name : {"PROCESSING", "WARNING", "ERROR", "PROCESSED"}) {
    pictures_[name] = picture(name);
    released_[name] = releasedPicture(name);
  }
}

void JobListModel::setRows(std::vector<JobListRow> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

int JobListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int JobListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(jobColumnCount);
}

QVariant JobListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const JobListRow& row = rows_[static_cast<std::size_t>(index.row())];
  const auto column = static_cast<JobColumn>(index.column());
  if (column == JobColumn::JobType) {
    if (role == Qt::DecorationRole) {
      const auto& pictures = row.released ? released_ : pictures_;
      const auto found = pictures.find(statePicture(row.jobType));
      return found == pictures.end() ? QVariant() : QVariant(found->second);
    }
    if (role == Qt::ToolTipRole || role == Qt::AccessibleTextRole) return toQt(rowStateText(row));
    return {};
  }
  // A cell too narrow for its text shows it as a tool tip.
  if (role == Qt::DisplayRole) return toQt(cellText(row, column));
  if (role == Qt::ToolTipRole) return plainToolTip(toQt(cellText(row, column)));
  return {};
}

QVariant JobListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const auto column = static_cast<JobColumn>(section);
  const QString caption = toQt(columnSpec(column).caption);
  if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole) return caption;
  // The picture column is as narrow as its pictures.
  if (role == Qt::DisplayRole) return column == JobColumn::JobType ? QString() : caption;
  return {};
}

} // namespace qx
