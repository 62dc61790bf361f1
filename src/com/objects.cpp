#include "com/objects.h"

#include "automation/automation_error.h"
#include "com/arguments.h"
#include "com/failure.h"
#include "com/text.h"

#include <utility>

namespace qx::com {
namespace {

using automation::Access;
using automation::AutomationError;
using automation::DispatchId;
using automation::ErrorNumber;
using automation::ObjectPointer;
using automation::Variant;

/// How an object calls itself, for messages.
std::string nameOf(IDispatch* object) {
  Pointer<ITypeInfo> type;
  Bstr name;
  if (FAILED(object->GetTypeInfo(0, LOCALE_NEUTRAL, type.receive())) || !type ||
      FAILED(type->GetDocumentation(MEMBERID_NIL, name.receive(), nullptr, nullptr, nullptr)))
    return "Objekt";
  return textIn(name.get());
}

void freeDetails(EXCEPINFO& details) {
  SysFreeString(details.bstrSource);
  SysFreeString(details.bstrDescription);
  SysFreeString(details.bstrHelpFile);
}

/// Raises what an object of the host has reported.
[[noreturn]] void raise(EXCEPINFO& details, std::string_view member) {
  if (details.pfnDeferredFillIn != nullptr) details.pfnDeferredFillIn(&details);
  std::string description = textIn(details.bstrDescription);
  const SCODE code = details.scode != 0 ? details.scode : MAKE_HRESULT(1, FACILITY_CONTROL, details.wCode);
  freeDetails(details);
  if (description.empty()) description = "Die Komponente meldet einen Fehler.";
  require(code, std::string(member) + ": " + description);
  throw AutomationError(ErrorNumber::Failed, std::string(member) + ": " + description);
}

} // namespace

// {B7C1E7A2-7A0B-4E0F-9F3C-6B0C3B5D9E41}
const IID ownObjectId = {0xb7c1e7a2, 0x7a0b, 0x4e0f, {0x9f, 0x3c, 0x6b, 0x0c, 0x3b, 0x5d, 0x9e, 0x41}};

Pointer<IDispatch> ObjectMap::outward(const ObjectPointer& object) {
  if (!object) return {};
  if (const auto* const ofHost = dynamic_cast<const HostObject*>(object.get()))
    return Pointer<IDispatch>(ofHost->dispatch());
  if (const auto found = ours_.find(object.get()); found != ours_.end())
    return Pointer<IDispatch>(found->second);
  auto made = Pointer<IDispatch>::adopt(make(object));
  ours_[object.get()] = made.get();
  return made;
}

ObjectPointer ObjectMap::inward(IDispatch* object) {
  if (object == nullptr) return nullptr;
  if (const auto own = query<OwnObject>(object, ownObjectId))
    if (&own->map() == this) return own->content();
  const auto identity = query<IUnknown>(object, IID_IUnknown);
  std::weak_ptr<automation::AutomationObject>& known = theirs_[identity.get()];
  if (auto host = known.lock()) return host;
  auto host = std::make_shared<HostObject>(weak_from_this(), object, identity.get());
  known = host;
  return host;
}

void ObjectMap::forgetInward(IUnknown* identity) {
  const auto found = theirs_.find(identity);
  if (found != theirs_.end() && found->second.expired()) theirs_.erase(found);
}

HostObject::HostObject(std::weak_ptr<ObjectMap> map, IDispatch* object, IUnknown* identity)
    : map_(std::move(map)), object_(object), expando_(query<IDispatchEx>(object, __uuidof(IDispatchEx))),
      identity_(identity), name_(nameOf(object)) {}

HostObject::~HostObject() {
  if (const auto map = map_.lock()) map->forgetInward(identity_.get());
}

std::shared_ptr<ObjectMap> HostObject::map() const {
  if (auto map = map_.lock()) return map;
  throw AutomationError(ErrorNumber::Internal, "Die Komponente ist beendet.");
}

std::optional<DispatchId> HostObject::memberId(std::string_view name) {
  const Bstr text(name);
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names = text.get();
  const bool found = (expando_ && SUCCEEDED(expando_->GetDispID(text.get(), fdexNameCaseInsensitive, &id))) ||
                     SUCCEEDED(object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_SYSTEM_DEFAULT, &id));
  if (!found) return std::nullopt;
  members_.insert_or_assign(id, std::string(name));
  return id;
}

/// The host tells the ids of parameters by the name of their member.
std::optional<DispatchId> HostObject::parameterId(DispatchId member, std::string_view name) {
  const auto known = members_.find(member);
  if (known == members_.end()) return std::nullopt;
  const Bstr ofMember(known->second);
  const Bstr ofParameter(name);
  LPOLESTR names[] = {ofMember.get(), ofParameter.get()};
  DISPID ids[] = {DISPID_UNKNOWN, DISPID_UNKNOWN};
  if (FAILED(object_->GetIDsOfNames(IID_NULL, names, 2, LOCALE_SYSTEM_DEFAULT, ids))) return std::nullopt;
  return ids[1];
}

Variant HostObject::invoke(DispatchId member, Access access, automation::Arguments& arguments) {
  const bool puts = allows(access, Access::Put) || allows(access, Access::PutReference);
  const auto map = this->map();
  OutgoingArguments outgoing(map, arguments, puts);
  OwnedVariant result;
  EXCEPINFO details{};
  UINT wrong = 0;
  const auto flags = static_cast<WORD>(access);
  const HRESULT code =
      expando_ ? expando_->InvokeEx(member, LOCALE_SYSTEM_DEFAULT, flags, outgoing.parameters(),
                                    puts ? nullptr : result.get(), &details, nullptr)
               : object_->Invoke(member, IID_NULL, LOCALE_SYSTEM_DEFAULT, flags, outgoing.parameters(),
                                 puts ? nullptr : result.get(), &details, &wrong);
  if (code == DISP_E_EXCEPTION) raise(details, name_);
  if (code == DISP_E_MEMBERNOTFOUND)
    throw AutomationError(ErrorNumber::NoSuchMember, name_ + " hat kein solches Mitglied.");
  if (code == DISP_E_BADPARAMCOUNT)
    throw AutomationError(ErrorNumber::ArgumentCount, name_ + " erwartet andere Argumente.");
  if (code == DISP_E_TYPEMISMATCH)
    throw AutomationError(ErrorNumber::TypeMismatch, name_ + " erwartet Argumente anderer Art.");
  require(code, name_ + ": Der Aufruf ist fehlgeschlagen.");
  outgoing.giveBack();
  return com::inward(map, *result.get());
}

} // namespace qx::com
