#include "convert/column_map.h"

#include <algorithm>

namespace qx::convert {

std::vector<std::string_view> requiredOf(JobKind kind) {
  // Without a key the same file would be staged twice as other jobs.
  if (kind == JobKind::Auftrag)
    return {"JobID", "Kundennummer", "Positionen.Artikelnummer", "Positionen.Menge"};
  return {"JobID", "Kundennummer"};
}

bool isRequired(JobKind kind, const JobProperty& property) {
  return std::ranges::any_of(requiredOf(kind), [&](std::string_view name) {
    const auto required = propertyOf(kind, name);
    return required && required->name == property.name && required->ofPosition == property.ofPosition;
  });
}

} // namespace qx::convert
