#include "ui/counted.h"

#include "model/german_text.h"

#include <algorithm>

namespace qx {
namespace {

constexpr std::size_t groupLength = 3;

/// Puts the separators into the whole part of a plain German number.
std::string separated(std::string plain) {
  const std::size_t first = plain.starts_with('-') ? 1 : 0;
  const std::size_t end = std::min(plain.find(','), plain.size());
  for (std::size_t at = end; at > first + groupLength; at -= groupLength) plain.insert(at - groupLength, ".");
  return plain;
}

} // namespace

std::string grouped(std::int64_t number) { return separated(std::to_string(number)); }

std::string groupedSum(double sum) { return separated(germanDecimals(sum, 2)); }

std::string counted(std::int64_t count, std::string_view one, std::string_view more) {
  return grouped(count) + " " + std::string(count == 1 ? one : more);
}

std::string jobsInWords(std::size_t count) { return counted(whole(count), "Vorgang", "Vorgänge"); }

} // namespace qx
