// Field tables: one constexpr list per record class from which columns, JSON names, file orders and grids
// are derived.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace qx {

/// The type of a property. `Date` is a text in the German short form.
enum class FieldKind : std::uint8_t { Text, Date, Int16, Int32, Double, Boolean };

/// One property of a record class: its public name, where it lives in the record, what it holds, and the
/// staging column that stores it (empty when it is not stored).
template <class Record>
struct Field {
  using Member = std::variant<std::string Record::*, std::int16_t Record::*, std::int32_t Record::*,
                              double Record::*, bool Record::*>;

  std::string_view name;
  Member member;
  FieldKind kind = FieldKind::Text;
  std::string_view column;

  constexpr Field() = default;
  template <class Owner>
  constexpr Field(std::string_view property, std::string Owner::*where)
      : name(property), member(static_cast<std::string Record::*>(where)), column(property) {}
  template <class Owner>
  constexpr Field(std::string_view property, std::int16_t Owner::*where)
      : name(property), member(static_cast<std::int16_t Record::*>(where)), kind(FieldKind::Int16),
        column(property) {}
  template <class Owner>
  constexpr Field(std::string_view property, std::int32_t Owner::*where)
      : name(property), member(static_cast<std::int32_t Record::*>(where)), kind(FieldKind::Int32),
        column(property) {}
  template <class Owner>
  constexpr Field(std::string_view property, double Owner::*where)
      : name(property), member(static_cast<double Record::*>(where)), kind(FieldKind::Double),
        column(property) {}
  template <class Owner>
  constexpr Field(std::string_view property, bool Owner::*where)
      : name(property), member(static_cast<bool Record::*>(where)), kind(FieldKind::Boolean),
        column(property) {}

  /// A text that holds a German date.
  constexpr Field date() const {
    Field field = *this;
    field.kind = FieldKind::Date;
    return field;
  }
  /// Stored under another column name than the property's.
  constexpr Field in(std::string_view stagingColumn) const {
    Field field = *this;
    field.column = stagingColumn;
    return field;
  }
  constexpr Field notStored() const { return in({}); }
  constexpr bool stored() const { return !column.empty(); }

  /// Calls `visitor` with a reference to the property inside `record`.
  template <class R, class Visitor>
  decltype(auto) visit(R& record, Visitor&& visitor) const {
    return std::visit([&](auto where) -> decltype(auto) { return visitor(record.*where); }, member);
  }
};

template <class Record, std::size_t N>
using FieldTable = std::array<Field<Record>, N>;

template <class Record, class... Fields>
constexpr FieldTable<Record, sizeof...(Fields)> fieldTable(const Fields&... fields) {
  return {fields...};
}

/// Concatenates tables.
template <class Record, std::size_t... Ns>
constexpr auto joinTables(const FieldTable<Record, Ns>&... tables) {
  FieldTable<Record, (Ns + ... + 0)> joined{};
  std::size_t at = 0;
  const auto append = [&](const auto& table) {
    for (const auto& field : table) joined[at++] = field;
  };
  (append(tables), ...);
  return joined;
}

/// The index of a property in a table, or the size of the table when it has none of that name.
template <class Record, std::size_t N>
constexpr std::size_t fieldIndex(const FieldTable<Record, N>& table, std::string_view name) {
  std::size_t index = 0;
  while (index < N && table[index].name != name) ++index;
  return index;
}

} // namespace qx
