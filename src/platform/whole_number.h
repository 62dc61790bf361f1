// Whole numbers of the database in types of their own.
#pragma once

#include "platform/value.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace qx {

/// The whole number of a value as a `Number`; null when the value holds none or one that does not fit, which
/// cut off would be another number.
template <class Number>
std::optional<Number> wholeAs(const Value& value) {
  const auto whole = value.integer();
  if (!whole || !std::in_range<Number>(*whole)) return std::nullopt;
  return static_cast<Number>(*whole);
}

/// The code of a job as its row holds it; 0, which is no code, for everything else.
inline std::int16_t jobCode(const Value& value) { return wholeAs<std::int16_t>(value).value_or(0); }

} // namespace qx
