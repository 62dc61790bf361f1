// The properties of jobs and of their positions by name, for maps that name them.
#pragma once

#include "model/field_table.h"
#include "model/required_properties.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace qx::convert {

enum class JobKind : std::uint8_t { Kunde, Vertrag, Auftrag };

/// The kind of this name, as `type` of a file of jobs spells it; null for any other text.
std::optional<JobKind> jobKindOf(std::string_view name);
std::string_view nameOf(JobKind kind);
ObjectKind objectKindOf(JobKind kind);

struct JobProperty {
  std::string_view name; ///< without the prefix; lives as long as the program
  FieldKind kind = FieldKind::Text;
  bool ofPosition = false;

  bool isSame(const JobProperty& other) const { return name == other.name && ofPosition == other.ofPosition; }
};

/// What a property of a position begins with in a map.
inline constexpr std::string_view positionPrefix = "Positionen.";

/// The property of this name, with `positionPrefix` that of a position; null when the kind has none.
std::optional<JobProperty> propertyOf(JobKind kind, std::string_view name);

} // namespace qx::convert
