// Numbers in the texts of windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// A count as the functions below take it.
constexpr std::int64_t whole(std::size_t count) { return static_cast<std::int64_t>(count); }

/// A whole number with German separators: "48.213".
std::string grouped(std::int64_t number);
/// A sum with German separators and two decimals: "1.234,50".
std::string groupedSum(double sum);
/// A number and what it counts: "1 Vorgang", "2.000 Vorgänge".
std::string counted(std::int64_t count, std::string_view one, std::string_view more);
/// "1 Vorgang", "2.000 Vorgänge".
std::string jobsInWords(std::size_t count);

} // namespace qx
