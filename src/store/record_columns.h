// Copies the stored properties of a record into a row, driven by the record's field table.
#pragma once

#include "model/field_table.h"
#include "platform/database.h"
#include "store/field_order.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace qx {

namespace detail {

template <const auto& table, std::size_t... index>
constexpr auto columnNames(std::index_sequence<index...> /*places*/) {
  return std::array<ColumnName, sizeof...(index)>{ColumnName(table[index].column)...};
}

/// The columns of a field table, hashed at compile time.
template <const auto& table>
constexpr auto columns = columnNames<table>(std::make_index_sequence<table.size()>{});

/// The columns of an order of fields; a name without a property is the column's own.
template <const auto& table, const auto& names, const auto& order, std::size_t... index>
constexpr auto orderedNames(std::index_sequence<index...> /*places*/) {
  return std::array<ColumnName, sizeof...(index)>{
      ColumnName(order[index] == noProperty ? names[index] : table[order[index]].column)...};
}
template <const auto& table, const auto& names, const auto& order>
constexpr auto orderedColumns = orderedNames<table, names, order>(std::make_index_sequence<names.size()>{});

} // namespace detail

/// A column whose value is not simply the property of its name.
struct GivenColumn {
  std::string_view name;
  Value value;
};

/// Sets the named columns in their order. `order` holds the table indexes of `names`; a name without an index
/// must be in `given`.
template <const auto& table, const auto& names, const auto& order, class Record>
void setColumnsInOrder(RowValues& row, const Record& record, std::initializer_list<GivenColumn> given) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    const ColumnName column = detail::orderedColumns<table, names, order>[i];
    const auto* const own = std::ranges::find(given, names[i], &GivenColumn::name);
    if (own != given.end())
      row.set(column, own->value);
    else
      row.set(column, table.at(order[i]).visit(record, [](const auto& property) { return Value(property); }));
  }
}

/// Sets every stored property of the record but `except`, which the caller sets.
template <const auto& table, class Record>
void setColumns(RowValues& row, const Record& record, std::string_view except = {}) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto& field = table[i];
    if (!field.stored() || field.name == except) continue;
    row.set(detail::columns<table>[i],
            field.visit(record, [](const auto& property) { return Value(property); }));
  }
}

} // namespace qx
