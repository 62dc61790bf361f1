#include "com/registration.h"

#include "com/class_ids.h"
#include "com/text.h"

#include <utility>

namespace qx::com {
namespace {

const std::wstring classesKey = L"Software\\Classes\\";
const std::wstring component = L"QXImportJob";
const wchar_t* const wordSize = sizeof(void*) == 8 ? L"win64" : L"win32";

std::wstring braced(REFGUID id) {
  wchar_t text[40];
  StringFromGUID2(id, text, 40);
  return text;
}

/// Remembers the first failure and writes nothing after it.
class Keys {
public:
  explicit Keys(HKEY hive) : hive_(hive) {}

  /// `name` null: the key's own value.
  void set(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    if (failure_ != ERROR_SUCCESS) return;
    HKEY opened = nullptr;
    failure_ = RegCreateKeyExW(hive_, (classesKey + key).c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened,
                               nullptr);
    if (failure_ != ERROR_SUCCESS) return;
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    failure_ = RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes);
    RegCloseKey(opened);
  }
  void remove(const std::wstring& key) {
    const LONG failure = RegDeleteTreeW(hive_, (classesKey + key).c_str());
    if (failure != ERROR_SUCCESS && failure != ERROR_FILE_NOT_FOUND && failure_ == ERROR_SUCCESS)
      failure_ = failure;
    // The tree's own key, which some systems leave.
    RegDeleteKeyW(hive_, (classesKey + key).c_str());
  }
  HRESULT result() const { return HRESULT_FROM_WIN32(static_cast<DWORD>(failure_)); }

private:
  HKEY hive_;
  LONG failure_ = ERROR_SUCCESS;
};

std::wstring libraryKey() { return L"TypeLib\\" + braced(typeLibraryId); }

} // namespace

HRESULT registerClasses(HKEY hive, const std::wstring& file) {
  Keys keys(hive);
  for (const ClassIds& ids : classIds()) {
    const std::wstring name = component + L"." + wide(ids.name);
    const std::wstring classKey = L"CLSID\\" + braced(ids.classId);
    keys.set(name, nullptr, name);
    keys.set(name + L"\\CLSID", nullptr, braced(ids.classId));
    keys.set(classKey, nullptr, name);
    keys.set(classKey + L"\\InprocServer32", nullptr, file);
    keys.set(classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    keys.set(classKey + L"\\ProgID", nullptr, name);
    keys.set(classKey + L"\\TypeLib", nullptr, braced(typeLibraryId));
    keys.set(classKey + L"\\Version", nullptr, L"1.0");
    keys.set(classKey + L"\\Programmable", nullptr, L"");
  }
  const std::wstring version = libraryKey() + L"\\1.0";
  keys.set(version, nullptr, L"Quorvex ImportJob");
  keys.set(version + L"\\FLAGS", nullptr, L"0");
  keys.set(version + L"\\0\\" + wordSize, nullptr, file);
  keys.set(version + L"\\HELPDIR", nullptr, file.substr(0, file.find_last_of(L'\\')));
  if (FAILED(keys.result())) unregisterClasses(hive);
  return keys.result();
}

HRESULT unregisterClasses(HKEY hive) {
  Keys keys(hive);
  for (const ClassIds& ids : classIds()) {
    keys.remove(component + L"." + wide(ids.name));
    keys.remove(L"CLSID\\" + braced(ids.classId));
  }
  keys.remove(libraryKey());
  return keys.result();
}

} // namespace qx::com
