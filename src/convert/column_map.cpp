#include "convert/column_map.h"

#include "model/required_properties.h"

namespace qx::convert {

std::vector<std::string> requiredOf(JobKind kind) {
  // Without a key the same file would be staged twice as other jobs.
  std::vector<std::string> names{"JobID"};
  for (const std::string_view name : requiredProperties(objectKindOf(kind)))
    if (name != positionsProperty)
      names.emplace_back(name);
    else
      for (const std::string_view ofPosition : requiredProperties(ObjectKind::OrderPosition))
        names.push_back(std::string(positionPrefix) + std::string(ofPosition));
  return names;
}

std::span<const std::string_view> namesOf(JobKind kind) {
  if (kind == JobKind::Kunde) return customerNames;
  return {};
}

bool isEmptyLiteral(std::string_view literal) { return literal.empty() || literal == R"("")"; }

} // namespace qx::convert
