// The classes in the registry.
#pragma once

#include "com/windows_headers.h"

#include <string>

namespace qx::com {

/// Makes the classes and the type library in a file known to a machine (`HKEY_LOCAL_MACHINE`) or to the
/// current user (`HKEY_CURRENT_USER`).
HRESULT registerClasses(HKEY hive, const std::wstring& file);
/// Removes what `registerClasses` has written there. What is not there is no error.
HRESULT unregisterClasses(HKEY hive);

} // namespace qx::com
