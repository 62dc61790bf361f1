#include "adapters/sql/row_shape.h"

#include "adapters/sql/dialect.h"
#include "model/text.h"

#include <algorithm>
#include <bit>

namespace qx::relational {

RowShape::RowShape(Statement& statement, const ResultLayout& layout, const Dialect& dialect,
                   const Spelling& spelling)
    : width_(statement.columnCount()) {
  for (auto i = static_cast<std::size_t>(layout.hidden); i < width_; ++i) {
    const std::string_view name = statement.columnName(i);
    if (layout.wholeRows && !dialect.rowKeyColumn.empty() && equalCodes(name, dialect.rowKey)) continue;
    const bool computed =
        std::ranges::any_of(layout.computed, [&](const auto& each) { return equalCodes(each, name); });
    columns_.push_back(
        {std::string(spelling.of(name)), static_cast<std::uint32_t>(i), statement.columnKind(i), !computed});
  }
  slots_.resize(std::bit_ceil(columns_.size() * 2 + 1));
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const std::uint64_t hash = foldedNameHash(columns_[i].name);
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].used && slots_[at].hash != hash) at = (at + 1) & (slots_.size() - 1);
    if (!slots_[at].used) slots_[at] = {hash, static_cast<std::uint32_t>(i), true};
  }
}

RowShape RowShape::without(std::uint32_t leading) const {
  RowShape shape = *this;
  for (Column& column : shape.columns_) column.place -= leading;
  shape.width_ -= leading;
  return shape;
}

std::size_t RowShape::find(ColumnName column) const {
  std::size_t at = column.hash() & (slots_.size() - 1);
  while (slots_[at].used) {
    if (slots_[at].hash == column.hash()) return slots_[at].index;
    at = (at + 1) & (slots_.size() - 1);
  }
  return size();
}

} // namespace qx::relational
