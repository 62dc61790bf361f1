// The identities under which the system knows the classes. They never change.
#pragma once

#include "com/windows_headers.h"

#include <span>
#include <string_view>

namespace qx::com {

/// A public class: what creates it, its interface, and that of its events.
struct ClassIds {
  std::string_view name;
  CLSID classId;
  IID interfaceId;
  IID eventsId; ///< all zero for none
};

std::span<const ClassIds> classIds();
/// Null for none.
const ClassIds* idsOf(std::string_view className);
const ClassIds* idsOf(REFCLSID classId);

extern const GUID typeLibraryId;
inline constexpr WORD typeLibraryMajor = 1;
inline constexpr WORD typeLibraryMinor = 0;
/// The enumerations are numbered from this one on.
GUID enumerationId(std::size_t index);

} // namespace qx::com
