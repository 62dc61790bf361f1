// The type library, written from the tables of the classes and read from the library's own file.
#pragma once

#include "com/windows_headers.h"

#include <string>

namespace qx::com {

/// Writes the type library for programs of one word size to a file. Raises `AutomationError` when that fails.
void writeTypeLibrary(const std::wstring& file, SYSKIND kind);

/// The description of a class, an interface or an enumeration, from the type library embedded in the module.
HRESULT typeDescription(REFGUID id, ITypeInfo** type);

} // namespace qx::com
