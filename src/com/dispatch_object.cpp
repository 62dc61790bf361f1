#include "com/dispatch_object.h"

#include "automation/automation_error.h"
#include "com/arguments.h"
#include "com/class_ids.h"
#include "com/connection_point.h"
#include "com/failure.h"
#include "com/text.h"
#include "com/type_library.h"

#include <algorithm>
#include <utility>

namespace qx::com {
namespace {

using automation::Access;
using automation::AutomationError;
using automation::ErrorNumber;
using automation::Member;
using automation::Variant;

/// What a host asks for. Both flags of setting mean a plain value, unless it is an object.
Access accessOf(WORD flags) {
  if ((flags & DISPATCH_PROPERTYPUT) != 0) return Access::Put;
  if ((flags & DISPATCH_PROPERTYPUTREF) != 0) return Access::PutReference;
  return static_cast<Access>(flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET));
}

} // namespace

DispatchObject::DispatchObject(std::shared_ptr<Apartment> apartment, automation::ObjectPointer content)
    : apartment_(std::move(apartment)), content_(std::move(content)) {}

DispatchObject::~DispatchObject() { apartment_->forgetOutward(content_.get()); }

const automation::ClassTable* DispatchObject::table() const {
  const auto* const object = dynamic_cast<const automation::ClassObject*>(content_.get());
  return object == nullptr ? nullptr : &object->table();
}

automation::EventProvider* DispatchObject::events() const {
  return dynamic_cast<automation::EventProvider*>(content_.get());
}

HRESULT DispatchObject::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, __uuidof(IDispatchEx)))
    *object = static_cast<IDispatchEx*>(this);
  else if (IsEqualIID(id, IID_IProvideClassInfo) || IsEqualIID(id, IID_IProvideClassInfo2))
    *object = static_cast<IProvideClassInfo2*>(this);
  else if (IsEqualIID(id, IID_ISupportErrorInfo))
    *object = static_cast<ISupportErrorInfo*>(this);
  else if (IsEqualIID(id, IID_IConnectionPointContainer) && events() != nullptr)
    *object = static_cast<IConnectionPointContainer*>(this);
  else if (IsEqualIID(id, ownObjectId))
    *object = static_cast<OwnObject*>(this);
  else if (const auto* const ids = table() == nullptr ? nullptr : idsOf(table()->name());
           ids != nullptr && IsEqualIID(id, ids->interfaceId))
    *object = static_cast<IDispatchEx*>(this);
  else
    return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = table() != nullptr && idsOf(table()->name()) != nullptr ? 1 : 0;
  return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** type) {
  if (type == nullptr) return E_POINTER;
  *type = nullptr;
  UINT count = 0;
  GetTypeInfoCount(&count);
  if (index >= count) return DISP_E_BADINDEX;
  return typeDescription(idsOf(table()->name())->interfaceId, type);
}

HRESULT DispatchObject::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                      DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (std::find(names, names + count, nullptr) != names + count) return E_POINTER;
  if (count == 0) return S_OK;
  return guarded([&]() -> HRESULT {
    apartment_->requireThread();
    const auto member = content_->memberId(narrow(names[0]));
    bool known = member.has_value();
    ids[0] = member.value_or(DISPID_UNKNOWN);
    for (UINT i = 1; i < count; ++i) {
      const auto parameter = member ? content_->parameterId(*member, narrow(names[i])) : std::nullopt;
      known = known && parameter.has_value();
      ids[i] = parameter.value_or(DISPID_UNKNOWN);
    }
    return known ? S_OK : DISP_E_UNKNOWNNAME;
  });
}

HRESULT DispatchObject::Invoke(DISPID member, REFIID /*reserved*/, LCID locale, WORD flags,
                               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* details, UINT* /*wrong*/) {
  return InvokeEx(member, locale, flags, parameters, result, details, nullptr);
}

HRESULT DispatchObject::InvokeEx(DISPID member, LCID /*locale*/, WORD flags, DISPPARAMS* parameters,
                                 VARIANT* result, EXCEPINFO* details, IServiceProvider* /*caller*/) {
  if (parameters == nullptr) return E_POINTER;
  if ((flags & DISPATCH_CONSTRUCT) != 0) return DISP_E_MEMBERNOTFOUND;
  // The caller may release its last reference while the member runs, in an event for example.
  const Pointer<IUnknown> self(identity());
  const std::shared_ptr<Apartment> apartment = apartment_;
  if (result != nullptr) VariantInit(result);
  try {
    apartment->requireThread();
    IncomingArguments incoming(apartment, *parameters);
    const Variant answer = content_->invoke(member, accessOf(flags), incoming.arguments());
    incoming.giveBack();
    if (result == nullptr) return S_OK;
    if (const auto* const object = answer.kind() == automation::VariantKind::Object
                                       ? &answer.as<automation::ObjectPointer>()
                                       : nullptr)
      if (auto items = std::dynamic_pointer_cast<automation::Enumeration>(*object)) {
        result->punkVal = makeEnumerator(apartment, std::move(items));
        result->vt = VT_UNKNOWN;
        return S_OK;
      }
    outward(*apartment, answer, *result);
    return S_OK;
  } catch (...) {
    return report(std::current_exception(), "QXImportJob." + std::string(content_->className()), details);
  }
}

HRESULT DispatchObject::GetDispID(BSTR name, DWORD /*flags*/, DISPID* id) {
  if (id == nullptr) return E_POINTER;
  LPOLESTR text = name;
  return GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, id);
}

HRESULT DispatchObject::DeleteMemberByName(BSTR /*name*/, DWORD /*flags*/) { return S_FALSE; }

HRESULT DispatchObject::DeleteMemberByDispID(DISPID /*member*/) { return S_FALSE; }

HRESULT DispatchObject::GetMemberProperties(DISPID member, DWORD wanted, DWORD* properties) {
  if (properties == nullptr) return E_POINTER;
  const Member* const found = table() == nullptr ? nullptr : table()->find(member);
  if (found == nullptr) return DISP_E_MEMBERNOTFOUND;
  const auto& it = found->description;
  *properties = fdexPropCannotConstruct | fdexPropCannotSourceEvents | fdexPropNoSideEffects;
  *properties |= it.isMethod ? fdexPropCanCall : fdexPropCannotCall;
  *properties |= it.readable ? fdexPropCanGet : fdexPropCannotGet;
  *properties |= it.writable ? fdexPropCanPut : fdexPropCannotPut;
  *properties &= wanted & ~DWORD{it.isMethod ? fdexPropNoSideEffects : 0U};
  return S_OK;
}

HRESULT DispatchObject::GetMemberName(DISPID member, BSTR* name) {
  if (name == nullptr) return E_POINTER;
  const Member* const found = table() == nullptr ? nullptr : table()->find(member);
  if (found == nullptr) return DISP_E_MEMBERNOTFOUND;
  return guarded([&]() -> HRESULT {
    *name = Bstr(found->description.name).release();
    return S_OK;
  });
}

HRESULT DispatchObject::GetNextDispID(DWORD /*flags*/, DISPID member, DISPID* next) {
  if (next == nullptr) return E_POINTER;
  if (table() == nullptr) return S_FALSE;
  bool found = member == DISPID_STARTENUM;
  for (const Member& each : table()->members()) {
    if (found && !each.description.hidden) {
      *next = each.description.id;
      return S_OK;
    }
    found = found || each.description.id == member;
  }
  return S_FALSE;
}

HRESULT DispatchObject::GetNameSpaceParent(IUnknown** parent) {
  if (parent != nullptr) *parent = nullptr;
  return S_OK;
}

HRESULT DispatchObject::GetClassInfo(ITypeInfo** type) {
  if (type == nullptr) return E_POINTER;
  *type = nullptr;
  const auto* const ids = table() == nullptr ? nullptr : idsOf(table()->name());
  return ids == nullptr ? E_NOTIMPL : typeDescription(ids->classId, type);
}

HRESULT DispatchObject::GetGUID(DWORD kind, GUID* id) {
  if (id == nullptr) return E_POINTER;
  *id = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  const auto* const ids = table() == nullptr ? nullptr : idsOf(table()->name());
  if (ids == nullptr || events() == nullptr) return S_FALSE;
  *id = ids->eventsId;
  return S_OK;
}

HRESULT DispatchObject::InterfaceSupportsErrorInfo(REFIID id) {
  const auto* const ids = table() == nullptr ? nullptr : idsOf(table()->name());
  const bool ours = IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, __uuidof(IDispatchEx)) ||
                    (ids != nullptr && IsEqualIID(id, ids->interfaceId));
  return ours ? S_OK : S_FALSE;
}

HRESULT DispatchObject::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (points == nullptr) return E_POINTER;
  return guarded([&]() -> HRESULT {
    apartment_->requireThread();
    Pointer<IConnectionPoint> point;
    const HRESULT found = FindConnectionPoint(idsOf(table()->name())->eventsId, point.receive());
    if (FAILED(found)) return found;
    *points = makeConnectionPointList(point.get());
    return S_OK;
  });
}

HRESULT DispatchObject::FindConnectionPoint(REFIID id, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  const auto* const ids = table() == nullptr ? nullptr : idsOf(table()->name());
  if (ids == nullptr || events() == nullptr) return CONNECT_E_NOCONNECTION;
  if (!IsEqualIID(id, ids->eventsId) && !IsEqualIID(id, IID_IDispatch)) return CONNECT_E_NOCONNECTION;
  return guarded([&]() -> HRESULT {
    *point =
        makeConnectionPoint(apartment_, Pointer<IConnectionPointContainer>(this), content_, ids->eventsId);
    return S_OK;
  });
}

} // namespace qx::com
