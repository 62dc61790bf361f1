#include "ui/qt/grid_model.h"

#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

namespace qx {
namespace {

bool isNumeric(GridColumnKind kind) {
  return kind == GridColumnKind::Number || kind == GridColumnKind::Money;
}

bool isPicture(GridColumnKind kind) {
  return kind == GridColumnKind::Picture || kind == GridColumnKind::Button;
}

QString firstLine(const QString& text) {
  const qsizetype end = text.indexOf(QLatin1Char('\n'));
  return end < 0 ? text : text.left(end).trimmed() + QStringLiteral(" …");
}

QVariant alignment(GridColumnKind kind) {
  if (isNumeric(kind)) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  if (isPicture(kind) || kind == GridColumnKind::Check) return QVariant(Qt::AlignCenter);
  return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
}

} // namespace

QVariant GridModel::shownText(const GridCell& cell, GridColumnKind kind, const Refused* refused) {
  if (isPicture(kind) || kind == GridColumnKind::Check) return {};
  if (refused != nullptr) return refused->text;
  return kind == GridColumnKind::LongText ? firstLine(toQt(cell.text)) : toQt(cell.text);
}

QVariant GridModel::decoration(const GridCell& cell, GridColumnKind kind, const Refused* refused) {
  if (isPicture(kind)) return cell.bitmap.empty() ? QVariant() : QVariant(picture(cell.bitmap));
  if (refused != nullptr) return fieldPicture(CheckStatus::Error);
  return cell.severity == CheckStatus::Clean ? QVariant() : QVariant(fieldPicture(cell.severity));
}

QVariant GridModel::explanation(const GridCell& cell, GridColumnKind kind, const Refused* refused) {
  if (refused != nullptr) return refused->reason;
  if (!cell.message.empty()) return toQt(cell.message);
  return kind == GridColumnKind::LongText ? toQt(cell.text) : QString();
}

GridModel::GridModel(JobGrid& grid, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), rows_(static_cast<int>(grid.rowCount())) {}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(grid_.columns().size());
}

const GridModel::Refused* GridModel::refusedAt(const QModelIndex& index) const {
  const auto found = refused_.find({index.row(), index.column()});
  return found == refused_.end() ? nullptr : &found->second;
}

std::string GridModel::editText(std::size_t row, std::size_t column) const {
  return grid_.editing() == nullptr ? grid_.cell(row, column).text : grid_.editing()->editText(row, column);
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= static_cast<int>(grid_.rowCount())) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const auto field = static_cast<std::size_t>(index.column());
  const GridColumnKind kind = column(index.column()).kind;
  const Refused* refused = refusedAt(index);
  switch (role) {
  case Qt::TextAlignmentRole:
    return alignment(kind);
  case Qt::EditRole:
    return refused != nullptr ? refused->text : toQt(editText(row, field));
  case Qt::DisplayRole:
    return shownText(grid_.cell(row, field), kind, refused);
  case Qt::DecorationRole:
    return decoration(grid_.cell(row, field), kind, refused);
  case Qt::CheckStateRole:
    if (kind != GridColumnKind::Check) return {};
    return grid_.cell(row, field).text == "1" ? Qt::Checked : Qt::Unchecked;
  case Qt::AccessibleTextRole:
    return isPicture(kind) ? explanation(grid_.cell(row, field), kind, refused) : QVariant();
  case Qt::ToolTipRole:
    return plainToolTip(explanation(grid_.cell(row, field), kind, refused).toString());
  default:
    return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (section < 0 || (orientation == Qt::Vertical && section >= static_cast<int>(grid_.rowCount())))
    return {};
  if (orientation == Qt::Vertical)
    return role == Qt::DisplayRole ? QVariant(toQt(grid_.rowLabel(static_cast<std::size_t>(section))))
                                   : QAbstractTableModel::headerData(section, orientation, role);
  if (role == Qt::DisplayRole) return toQt(column(section).caption);
  return role == Qt::TextAlignmentRole ? alignment(column(section).kind) : QVariant();
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  const GridColumn& spec = column(index.column());
  if (!grid_.editable() || !spec.editable) return flags;
  return flags | (spec.kind == GridColumnKind::Check ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || (role != Qt::EditRole && role != Qt::CheckStateRole)) return false;
  const auto row = static_cast<std::size_t>(index.row());
  const auto field = static_cast<std::size_t>(index.column());
  const QString text = role == Qt::EditRole           ? value.toString()
                       : value.toInt() == Qt::Checked ? QStringLiteral("1")
                                                      : QStringLiteral("0");
  refused_.erase({index.row(), index.column()});
  QString reason;
  if (fromQt(text) != editText(row, field)) {
    reason = toQt(grid_.editing()->edit(row, field, fromQt(text)));
    if (!reason.isEmpty()) refused_[{index.row(), index.column()}] = {text, reason};
  }
  emit dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1));
  emit cellSet(reason);
  return true;
}

void GridModel::refresh() {
  const int rows = static_cast<int>(grid_.rowCount());
  if (rows == rows_) {
    if (rows > 0) emit dataChanged(index(0, 0), index(rows - 1, columnCount() - 1));
    return;
  }
  beginResetModel();
  rows_ = rows;
  std::erase_if(refused_, [rows](const auto& entry) { return entry.first.first >= rows; });
  endResetModel();
}

int GridModel::addRow() {
  beginInsertRows({}, rows_, rows_);
  const int row = static_cast<int>(grid_.editing()->addRow());
  rows_ = static_cast<int>(grid_.rowCount());
  endInsertRows();
  return row;
}

void GridModel::removeRow(int row) {
  beginRemoveRows({}, row, row);
  grid_.editing()->removeRow(static_cast<std::size_t>(row));
  rows_ = static_cast<int>(grid_.rowCount());
  std::map<CellIndex, Refused> kept;
  for (auto& [cell, refused] : refused_)
    if (cell.first != row)
      kept.emplace(CellIndex{cell.first > row ? cell.first - 1 : cell.first, cell.second},
                   std::move(refused));
  refused_ = std::move(kept);
  endRemoveRows();
}

bool GridModel::isRefused(const QModelIndex& index) const { return refusedAt(index) != nullptr; }

QString GridModel::reason(const QModelIndex& index) const {
  const Refused* refused = refusedAt(index);
  return refused == nullptr ? QString() : refused->reason;
}

void GridModel::dropRefused(const QModelIndex& index) {
  if (refused_.erase({index.row(), index.column()}) > 0) emit dataChanged(index, index);
}

QModelIndex GridModel::firstRefused() const {
  if (refused_.empty()) return {};
  const CellIndex cell = refused_.begin()->first;
  return index(cell.first, cell.second);
}

} // namespace qx
