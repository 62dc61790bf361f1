#include "com/module_file.h"

#include "com/windows_headers.h"

namespace qx::com {

std::wstring moduleFile() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&moduleFile), &module);
  std::wstring file(32768, L'\0');
  file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

} // namespace qx::com
