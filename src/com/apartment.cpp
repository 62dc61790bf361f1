#include "com/apartment.h"

#include "automation/automation_error.h"
#include "com/dispatch_object.h"
#include "com/failure.h"
#include "com/text.h"

#include <map>
#include <mutex>
#include <utility>

namespace qx::com {

using automation::AutomationError;
using automation::ErrorNumber;
using automation::ObjectPointer;

std::shared_ptr<Apartment> Apartment::ofThread(const MakeSurroundings& make) {
  // What objects of a thread have in common is found from a class factory, which belongs to none.
  static std::mutex looking;
  static std::map<DWORD, std::weak_ptr<Apartment>> known;
  {
    const std::scoped_lock lock(looking);
    if (auto apartment = known[GetCurrentThreadId()].lock()) return apartment;
    std::erase_if(known, [](const auto& each) { return each.second.expired(); });
  }
  // Without the lock: making it calls other components.
  auto apartment = std::make_shared<Apartment>(make);
  const std::scoped_lock lock(looking);
  known[GetCurrentThreadId()] = apartment;
  return apartment;
}

Apartment::Apartment(const MakeSurroundings& make)
    : thread_(GetCurrentThreadId()), surroundings_(make(*this)) {}

Apartment::~Apartment() = default;

void Apartment::requireThread() const {
  if (GetCurrentThreadId() != thread_)
    throw AutomationError(ErrorNumber::InvalidCall, "Das Objekt gehört zu einem anderen Thread.");
}

Pointer<IDispatch> Apartment::create(std::string_view className) {
  auto component = component_.lock();
  if (!component) {
    component = automation::Component::create(surroundings_->environment(), surroundings_->database(),
                                              surroundings_->hostObjects());
    component_ = component;
  }
  return outward(component->createObject(className));
}

bool Apartment::isRegistered(std::string_view progId) {
  CLSID classId{};
  return SUCCEEDED(CLSIDFromProgID(wide(progId).c_str(), &classId));
}

ObjectPointer Apartment::createForeign(std::string_view progId) {
  CLSID classId{};
  Pointer<IDispatch> made;
  if (FAILED(CLSIDFromProgID(wide(progId).c_str(), &classId)) ||
      FAILED(CoCreateInstance(classId, nullptr, CLSCTX_SERVER, IID_IDispatch, made.receiveAny())))
    throw AutomationError(ErrorNumber::CannotCreate,
                          "Die Komponente '" + std::string(progId) + "' kann nicht erzeugt werden.");
  return inward(made.get());
}

IDispatch* Apartment::make(const ObjectPointer& object) {
  return new DispatchObject(std::static_pointer_cast<Apartment>(shared_from_this()), object);
}

} // namespace qx::com
