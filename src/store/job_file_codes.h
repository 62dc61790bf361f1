// Which job codes occur in job files, and how many fields their lines have.
#pragma once

#include "store/job_lines.h"
#include "store/version1_rows.h"

#include <cstddef>
#include <cstdint>

namespace qx {

enum class LineKind : std::uint8_t { None, Customer, Contract, Order, Position };

/// The line that a code has in a version-2 file. 44 has none, on purpose: deleted jobs are not exchanged.
constexpr LineKind lineKind(std::int64_t code) {
  if (code == qxtJobAuftragsPos) return LineKind::Position;
  if (code < qxtjobkunden || code > qxtjobkundenverträgedone || code % 10 > 3) return LineKind::None;
  switch (code / 10) {
  case 1:
    return LineKind::Customer;
  case 3:
    return LineKind::Order;
  default:
    return LineKind::Contract;
  }
}

constexpr bool isHeader(LineKind kind) { return kind != LineKind::None && kind != LineKind::Position; }

constexpr std::size_t fieldCount(std::int64_t code) {
  switch (lineKind(code)) {
  case LineKind::Customer:
    return customerLine.size();
  case LineKind::Contract:
    return contractLine.size();
  case LineKind::Order:
    return orderLine.size();
  case LineKind::Position:
    return positionLine.size();
  case LineKind::None:
    break;
  }
  return 0;
}

/// A header of a version-1 file: the codes of that version, and those of version 2 that share the table.
constexpr bool isVersion1Header(std::int64_t code) {
  return isHeader(lineKind(code)) || code == qxtJobTypeKundenFehler || code == qxtJobTypeVerträgeFehler ||
         code == qxtJobTypeAufträgeFehler;
}

constexpr std::size_t fieldCount1(std::int64_t code) {
  if (code == qxtJobTypeSubItem) return version1PositionLine.size();
  return isVersion1Header(code) ? version1HeaderLine.size() : 0;
}

} // namespace qx
