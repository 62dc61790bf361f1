// Writes of one row or statement as changes of rows.
#pragma once

#include "adapters/sql/known_rows.h"
#include "adapters/sql/statement_cache.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace qx::relational {

/// Gives the value that a column of a row had before it was changed; null when it is not known.
using BeforeValues = std::function<const Value*(std::size_t index)>;

/// A row that a record set writes.
class RowOfSource final : public RowChange {
public:
  RowOfSource(const RowSource& source, std::int64_t key, bool isNew, const ColumnMask& columns,
              std::span<const Value> values, const BeforeValues& before)
      : source_(source), key_(key), isNew_(isNew), columns_(columns), values_(values), before_(before) {}

  std::string_view table() const override { return source_.tableKey; }
  std::int64_t key() const override { return isNew_ ? 0 : key_; }
  bool isNew() const override { return isNew_; }
  const Value* before(ColumnName column) const override {
    const std::size_t index = source_.shape->find(column);
    return isNew_ || index >= source_.shape->size() || !source_.shape->stored(index) ? nullptr
                                                                                     : before_(index);
  }
  bool assigns(ColumnName column) const override {
    const std::size_t index = source_.shape->find(column);
    return index < source_.shape->size() && columns_[index];
  }
  const Value* after(ColumnName column) const override { return &values_[source_.shape->find(column)]; }
  void forEachAssigned(const std::function<void(ColumnName)>& visit) const override {
    for (std::size_t i = 0; i < source_.shape->size(); ++i)
      if (columns_[i]) visit(ColumnName(source_.shape->name(i)));
  }

private:
  const RowSource& source_;
  std::int64_t key_;
  bool isNew_;
  const ColumnMask& columns_;
  std::span<const Value> values_;
  const BeforeValues& before_;
};

/// The rows that a statement writes.
class RowsOfStatement final : public RowChange {
public:
  RowsOfStatement(const WritePattern& pattern, std::span<const Value> parameters)
      : pattern_(pattern), parameters_(parameters) {}

  std::string_view table() const override { return pattern_.table; }
  std::int64_t key() const override { return 0; }
  bool isNew() const override { return pattern_.kind == WritePattern::Kind::Insert; }
  bool isDeleted() const override { return pattern_.kind == WritePattern::Kind::Delete; }
  bool changesAll(const ReadPattern& read, std::span<const Value> parameters) const override {
    return pattern_.kind == WritePattern::Kind::Update && !pattern_.furtherConditions &&
           std::ranges::all_of(pattern_.equalities, [&](const ColumnTerm& met) {
             return std::ranges::any_of(read.equalities, [&](const ColumnTerm& wanted) {
               return sameCondition(met, parameters_, wanted, parameters);
             });
           });
  }
  const Value* before(ColumnName column) const override { return valueOf(pattern_.equalities, column); }
  bool assigns(ColumnName column) const override {
    return std::ranges::any_of(pattern_.assigned,
                               [&](const ColumnTerm& term) { return term.columnHash == column.hash(); });
  }
  const Value* after(ColumnName column) const override { return valueOf(pattern_.assigned, column); }
  void forEachAssigned(const std::function<void(ColumnName)>& visit) const override {
    for (const ColumnTerm& term : pattern_.assigned) visit(ColumnName(std::string_view(term.column)));
  }

private:
  const Value* valueOf(const std::vector<ColumnTerm>& terms, ColumnName column) const {
    for (const ColumnTerm& term : terms)
      if (term.columnHash == column.hash()) return term.value(parameters_);
    return nullptr;
  }

  const WritePattern& pattern_;
  std::span<const Value> parameters_;
};

} // namespace qx::relational
