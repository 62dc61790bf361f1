// Whole numbers of the database as C++ integer types.
#pragma once

#include "platform/value.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace qx {

/// The whole number of a value as a `Number`; null when the value holds none or one that does not fit.
template <class Number>
std::optional<Number> wholeAs(const Value& value) {
  const auto whole = value.integer();
  if (!whole || !std::in_range<Number>(*whole)) return std::nullopt;
  return static_cast<Number>(*whole);
}

/// The job code in a value; 0, which is no code, for anything else.
inline std::int16_t jobCode(const Value& value) { return wholeAs<std::int16_t>(value).value_or(0); }

} // namespace qx
