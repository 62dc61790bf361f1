// An object of ours as the host sees it.
#pragma once

#include "automation/class_object.h"
#include "automation/classes/engine_object.h"
#include "com/apartment.h"
#include "com/objects.h"
#include "com/pointer.h"
#include "com/windows_headers.h"

#include <memory>

namespace qx::com {

/// Calls by name and by id; the class, its type description and, where there are any, its events. Every
/// member belongs to the thread of the apartment, but for the counting of references.
class DispatchObject final : public Counted,
                             public IDispatchEx,
                             public IProvideClassInfo2,
                             public ISupportErrorInfo,
                             public IConnectionPointContainer,
                             public OwnObject {
public:
  DispatchObject(std::shared_ptr<Apartment> apartment, automation::ObjectPointer content);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return retain(); }
  ULONG STDMETHODCALLTYPE Release() override { return drop(); }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** type) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* details,
                                   UINT* wrong) override;

  HRESULT STDMETHODCALLTYPE GetDispID(BSTR name, DWORD flags, DISPID* id) override;
  HRESULT STDMETHODCALLTYPE InvokeEx(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* details, IServiceProvider* caller) override;
  HRESULT STDMETHODCALLTYPE DeleteMemberByName(BSTR name, DWORD flags) override;
  HRESULT STDMETHODCALLTYPE DeleteMemberByDispID(DISPID member) override;
  HRESULT STDMETHODCALLTYPE GetMemberProperties(DISPID member, DWORD wanted, DWORD* properties) override;
  HRESULT STDMETHODCALLTYPE GetMemberName(DISPID member, BSTR* name) override;
  HRESULT STDMETHODCALLTYPE GetNextDispID(DWORD flags, DISPID member, DISPID* next) override;
  HRESULT STDMETHODCALLTYPE GetNameSpaceParent(IUnknown** parent) override;

  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** type) override;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override;

  const automation::ObjectPointer& content() const override { return content_; }
  const ObjectMap& map() const override { return *apartment_; }

private:
  ~DispatchObject() override;
  /// The table of the class; null for an enumeration.
  const automation::ClassTable* table() const;
  automation::EventProvider* events() const;
  IUnknown* identity() { return static_cast<IDispatchEx*>(this); }

  std::shared_ptr<Apartment> apartment_; ///< outlives the content
  automation::ObjectPointer content_;
};

/// Items for `For Each`, with one reference.
IUnknown* makeEnumerator(std::shared_ptr<Apartment> apartment,
                         std::shared_ptr<automation::Enumeration> items);

} // namespace qx::com
