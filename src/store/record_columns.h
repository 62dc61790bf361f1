// Copies the stored properties of a record into a row, driven by the record's field table.
#pragma once

#include "model/field_table.h"
#include "platform/database.h"

#include <array>
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

} // namespace detail

/// Sets every stored property of the record but `except`, which the caller sets.
template <const auto& table, class Record>
void setColumns(Recordset& row, const Record& record, std::string_view except = {}) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto& field = table[i];
    if (!field.stored() || field.name == except) continue;
    row.set(detail::columns<table>[i],
            field.visit(record, [](const auto& property) { return Value(property); }));
  }
}

} // namespace qx
