#include "com/type_library.h"

#include "com/module_file.h"
#include "com/pointer.h"

#include <mutex>

namespace qx::com {

HRESULT typeDescription(REFGUID id, ITypeInfo** type) {
  // One for all apartments: a loaded type library may be used on any thread.
  static std::mutex loading;
  static ITypeLib* library = nullptr;
  const std::scoped_lock lock(loading);
  if (library == nullptr) {
    const HRESULT loaded = LoadTypeLibEx(moduleFile().c_str(), REGKIND_NONE, &library);
    if (FAILED(loaded)) return loaded;
  }
  return library->GetTypeInfoOfGuid(id, type);
}

} // namespace qx::com
