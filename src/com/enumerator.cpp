// The walk of For Each.
#include "com/arguments.h"
#include "com/dispatch_object.h"
#include "com/failure.h"

#include <utility>

namespace qx::com {
namespace {

class Enumerator final : public Counted, public IEnumVARIANT {
public:
  Enumerator(std::shared_ptr<Apartment> apartment, std::shared_ptr<automation::Enumeration> items)
      : apartment_(std::move(apartment)), items_(std::move(items)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IEnumVARIANT)) return E_NOINTERFACE;
    *object = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return retain(); }
  ULONG STDMETHODCALLTYPE Release() override { return drop(); }

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
    if (fetched != nullptr) *fetched = 0;
    if (values == nullptr || (count > 1 && fetched == nullptr)) return E_POINTER;
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      for (ULONG i = 0; i < count; ++i) {
        const auto item = items_->next();
        if (!item) return S_FALSE;
        VariantInit(&values[i]);
        outward(*apartment_, *item, values[i]);
        if (fetched != nullptr) *fetched = i + 1;
      }
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      return items_->skip(count) ? S_OK : S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      items_->reset();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return E_POINTER;
    return guarded([&]() -> HRESULT {
      apartment_->requireThread();
      *copy = new Enumerator(apartment_, items_->clone());
      return S_OK;
    });
  }

private:
  std::shared_ptr<Apartment> apartment_;
  std::shared_ptr<automation::Enumeration> items_;
};

} // namespace

IUnknown* makeEnumerator(std::shared_ptr<Apartment> apartment,
                         std::shared_ptr<automation::Enumeration> items) {
  return new Enumerator(std::move(apartment), std::move(items));
}

} // namespace qx::com
