// The entry points of the library.
#include "com/apartment.h"
#include "com/class_ids.h"
#include "com/failure.h"
#include "com/module_file.h"
#include "com/pointer.h"
#include "com/registration.h"
#include "com/surroundings.h"

#include <cwchar>

namespace qx::com {
namespace {

class ClassFactory final : public Counted, public IClassFactory {
public:
  explicit ClassFactory(const ClassIds& ids) : ids_(ids) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IClassFactory)) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return retain(); }
  ULONG STDMETHODCALLTYPE Release() override { return drop(); }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return guarded([&]() -> HRESULT {
      const auto made = Apartment::ofThread(makeSurroundings)->create(ids_.name);
      return made->QueryInterface(id, object);
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL locks) override {
    liveObjects() += locks != FALSE ? 1 : -1;
    return S_OK;
  }

private:
  const ClassIds& ids_;
};

} // namespace
} // namespace qx::com

using namespace qx::com;

extern "C" {

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const ClassIds* const ids = idsOf(classId);
  if (ids == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
  return guarded([&]() -> HRESULT {
    const auto factory = Pointer<IClassFactory>::adopt(new ClassFactory(*ids));
    return factory->QueryInterface(id, object);
  });
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() { return liveObjects() == 0 ? S_OK : S_FALSE; }

HRESULT STDAPICALLTYPE DllRegisterServer() {
  return guarded([] { return registerClasses(HKEY_LOCAL_MACHINE, moduleFile()); });
}

HRESULT STDAPICALLTYPE DllUnregisterServer() {
  return guarded([] { return unregisterClasses(HKEY_LOCAL_MACHINE); });
}

/// `user`: for the current user only.
HRESULT STDAPICALLTYPE DllInstall(BOOL installs, LPCWSTR options) {
  return guarded([&] {
    const bool user = options != nullptr && _wcsicmp(options, L"user") == 0;
    HKEY hive = user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    return installs != FALSE ? registerClasses(hive, moduleFile()) : unregisterClasses(hive);
  });
}
}
