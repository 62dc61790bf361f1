// How a table of the schema is described: columns, keys and indexes.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace qx::erp {

/// The type of a column. `Code` compares ignoring ASCII case, `Text` byte by byte.
enum class ColumnType : std::uint8_t { Code, Text, Small, Integer, Double, Boolean, Money };

/// The default of a column; null unless stated.
enum class ColumnDefault : std::uint8_t { None, Zero, One, EmptyText, DomesticTaxMark };

struct SchemaColumn {
  std::string_view name;
  ColumnType type = ColumnType::Text;
  bool key = false; ///< part of the primary key, so never null
  ColumnDefault standard = ColumnDefault::None;
};

/// `ByDate`: the last column is a German date text and is ordered by time. `Released`: only rows whose
/// column holds 1.
enum class IndexKind : std::uint8_t { Plain, Unique, ByDate, Released };

struct SchemaIndex {
  std::string_view name;
  std::array<std::string_view, 4> columns{}; ///< unused places at the end are empty
  IndexKind kind = IndexKind::Plain;
};

/// Tables without key columns are kept in order of insertion and addressed by the database's own row key.
struct SchemaTable {
  std::string_view name;
  std::span<const SchemaColumn> columns;
  std::span<const SchemaIndex> indexes;
};

/// Short forms for the lists of columns. Dates and time stamps are texts.
namespace columns {

constexpr SchemaColumn key(std::string_view name, ColumnType type = ColumnType::Code) {
  return {name, type, true};
}
constexpr SchemaColumn code(std::string_view name) { return {name, ColumnType::Code}; }
constexpr SchemaColumn text(std::string_view name) { return {name, ColumnType::Text}; }
constexpr SchemaColumn date(std::string_view name) { return {name, ColumnType::Text}; }
constexpr SchemaColumn stamp(std::string_view name) { return {name, ColumnType::Text}; }
constexpr SchemaColumn small(std::string_view name) { return {name, ColumnType::Small}; }
constexpr SchemaColumn integer(std::string_view name) { return {name, ColumnType::Integer}; }
constexpr SchemaColumn real(std::string_view name) { return {name, ColumnType::Double}; }
constexpr SchemaColumn flag(std::string_view name) { return {name, ColumnType::Boolean}; }
constexpr SchemaColumn money(std::string_view name) { return {name, ColumnType::Money}; }
/// The columns of a table.
template <class... Columns>
constexpr std::array<SchemaColumn, sizeof...(Columns)> list(const Columns&... columns) {
  return {columns...};
}
constexpr SchemaColumn withDefault(SchemaColumn column, ColumnDefault standard) {
  column.standard = standard;
  return column;
}

} // namespace columns

/// The staged jobs and the lock.
std::span<const SchemaTable> stagingTables();
/// Customers, addresses, contracts and the code tables about them.
std::span<const SchemaTable> customerTables();
/// Orders, articles, stock, tax and cost assignment.
std::span<const SchemaTable> orderTables();
/// Protocols and what the ERP's own components need.
std::span<const SchemaTable> componentTables();
/// The files of watched folders, what was handed over, and what became of it.
std::span<const SchemaTable> handoverTables();

} // namespace qx::erp
