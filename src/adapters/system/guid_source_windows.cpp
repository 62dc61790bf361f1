// GUIDs of the system.
#include "adapters/system/system_sources.h"

#include <objbase.h>

#include <algorithm>

namespace qx {

std::optional<GuidFields> SystemGuidSource::create() {
  GUID guid{};
  if (FAILED(CoCreateGuid(&guid))) return std::nullopt;
  GuidFields fields;
  fields.first = static_cast<std::uint32_t>(guid.Data1);
  fields.second = guid.Data2;
  fields.third = guid.Data3;
  std::copy(std::begin(guid.Data4), std::end(guid.Data4), fields.last.begin());
  return fields;
}

} // namespace qx
