#include "adapters/sql/row_shape.h"

#include "adapters/sql/dialect.h"
#include "model/text.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace qx::relational {

RowShape::RowShape(Statement& statement, const ResultLayout& layout, const Dialect& dialect,
                   const Spelling& spelling)
    : width_(statement.columnCount()) {
  for (auto i = static_cast<std::size_t>(layout.hidden); i < width_; ++i) {
    const std::string_view name = statement.columnName(i);
    if (layout.wholeRows && !dialect.rowKeyColumn.empty() && equalCodes(name, dialect.rowKey)) continue;
    const bool computed =
        std::ranges::any_of(layout.computed, [&](const auto& each) { return equalCodes(each, name); });
    std::string spelled(spelling.of(name));
    const std::uint64_t hash = foldedNameHash(spelled);
    columns_.push_back({std::move(spelled), hash, !computed});
    places_.push_back({static_cast<std::uint32_t>(i), statement.columnKind(i)});
  }
  slots_.resize(std::bit_ceil(columns_.size() * 2 + 1));
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const std::uint64_t hash = columns_[i].hash;
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].used && slots_[at].hash != hash) at = (at + 1) & (slots_.size() - 1);
    if (!slots_[at].used) slots_[at] = {hash, static_cast<std::uint32_t>(i), true};
  }
}

RowShape RowShape::without(std::uint32_t leading) const {
  RowShape shape = *this;
  for (ColumnPlace& place : shape.places_) place.index -= leading;
  shape.width_ -= leading;
  return shape;
}

std::size_t RowShape::findHash(std::uint64_t hash) const {
  std::size_t at = hash & (slots_.size() - 1);
  while (slots_[at].used) {
    if (slots_[at].hash == hash) return slots_[at].index;
    at = (at + 1) & (slots_.size() - 1);
  }
  return size();
}

} // namespace qx::relational
