#include "ui/qt/findings_model.h"

#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <utility>

namespace qx {
namespace {

enum Column { Code, Status, Text, ColumnCount };

QString placed(const ListedFinding& finding) {
  const std::string code(finding.code());
  const std::string& number = finding.found.position.number;
  return toQt(number.empty() ? code : code + " " + number);
}

} // namespace

void FindingsModel::show(std::vector<ListedFinding> findings) {
  beginResetModel();
  findings_ = std::move(findings);
  endResetModel();
}

std::optional<int> FindingsModel::rowOf(const ListedFinding& finding) const {
  for (std::size_t row = 0; row < findings_.size(); ++row)
    if (findings_[row].found.rule == finding.found.rule && findings_[row].item() == finding.item())
      return static_cast<int>(row);
  return std::nullopt;
}

QString FindingsModel::line(int row) const {
  const ListedFinding& shown = finding(row);
  return placed(shown) + QLatin1Char('\t') + toQt(severityWord(shown.found.severity)) + QLatin1Char('\t') +
         toQt(shown.text());
}

int FindingsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(findings_.size());
}

int FindingsModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant FindingsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const ListedFinding& shown = finding(index.row());
  if (index.column() == Status) {
    if (role == Qt::DecorationRole) return severityPicture(shown.found.severity);
    if (role == Qt::ToolTipRole || role == Qt::AccessibleTextRole)
      return toQt(severityWord(shown.found.severity));
    return {};
  }
  if (role == Qt::DisplayRole)
    return index.column() == Code ? placed(shown) : toQt(shown.text()).simplified();
  return role == Qt::ToolTipRole ? QVariant(plainToolTip(toQt(shown.text()))) : QVariant();
}

QVariant FindingsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole)
    return QVariant(section == Status ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
  if (role != Qt::DisplayRole) return {};
  switch (section) {
  case Code:
    return QStringLiteral("Zuordnung");
  case Status:
    return QStringLiteral("Status");
  default:
    return QStringLiteral("Fehlertext");
  }
}

} // namespace qx
