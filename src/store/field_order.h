// Field orders that differ from that of a field table, checked at compile time.
#pragma once

#include "model/field_table.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace qx {

/// Words separated by blanks.
template <std::size_t size>
struct WordText {
  // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions)
  consteval WordText(const char (&literal)[size]) { std::copy_n(literal, size, text); }
  char text[size]{};
};

/// The words of a text as an array.
template <WordText list>
consteval auto words() {
  constexpr std::string_view text(list.text, sizeof list.text - 1);
  std::array<std::string_view, std::ranges::count(text, ' ') + 1> found;
  std::size_t start = 0;
  for (std::string_view& word : found) {
    // The compiler's sanitizers do not take `find` of such a text for a constant.
    std::size_t end = start;
    while (end < text.size() && text[end] != ' ') ++end;
    word = text.substr(start, end - start);
    start = end + 1;
  }
  return found;
}

/// Concatenates lists.
template <std::size_t... sizes>
consteval auto joined(const std::array<std::string_view, sizes>&... lists) {
  std::array<std::string_view, (sizes + ...)> all;
  auto next = all.begin();
  ((next = std::ranges::copy(lists, next).out), ...);
  return all;
}

/// The index of a field of a line that is no property of the record.
inline constexpr std::size_t noProperty = static_cast<std::size_t>(-1);

/// The indexes in `table` of the named properties. A name that the table lacks does not compile, unless it is
/// empty or one of those that the record is known to lack.
template <class Record, std::size_t fields, std::size_t names, std::size_t lacking = 0>
consteval std::array<std::size_t, names> fieldOrder(const FieldTable<Record, fields>& table,
                                                    const std::array<std::string_view, names>& order,
                                                    const std::array<std::string_view, lacking>& lacks = {}) {
  std::array<std::size_t, names> indexes{};
  for (std::size_t i = 0; i < names; ++i) {
    bool known = order[i].empty();
    for (const std::string_view name : lacks) known = known || name == order[i];
    indexes[i] = fieldIndex(table, order[i]);
    if (indexes[i] == fields) {
      if (!known) throw "a field of the order is missing from the table";
      indexes[i] = noProperty;
    } else if (known) {
      throw "a field that should be missing is in the table";
    }
  }
  return indexes;
}

} // namespace qx
