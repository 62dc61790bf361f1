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
    component = automation::Component::create(surroundings_->environment(), surroundings_->database(), *this);
    component_ = component;
  }
  return outward(component->createObject(className));
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

std::shared_ptr<Connection> Apartment::connectionOf(const ObjectPointer& /*object*/) {
  throw AutomationError(ErrorNumber::TypeMismatch, "Das Objekt ist keine Verbindung dieser Komponente.");
}

std::shared_ptr<Session> Apartment::sessionOf(const ObjectPointer& /*object*/) {
  throw AutomationError(ErrorNumber::TypeMismatch, "Das Objekt ist keine Sitzung dieser Komponente.");
}

ObjectPointer Apartment::recordsetOf(const ComboRows& rows) {
  // adUseClient, adVarWChar
  constexpr std::int32_t clientCursor = 3;
  constexpr std::int32_t wideText = 202;
  constexpr std::int32_t longest = 255;
  const ObjectPointer recordset = createForeign("ADODB.Recordset");
  put(*recordset, "CursorLocation", clientCursor);
  const ObjectPointer fields = objectOf(get(*recordset, "Fields"));
  for (const std::string& column : rows.columns) call(*fields, "Append", {column, wideText, longest});
  call(*recordset, "Open");
  for (const auto& row : rows.rows) {
    call(*recordset, "AddNew");
    for (std::size_t i = 0; i < row.size(); ++i) {
      const ObjectPointer field = objectOf(call(*fields, "Item", {rows.columns[i]}));
      put(*field, "Value", row[i]);
    }
    call(*recordset, "Update");
  }
  return recordset;
}

} // namespace qx::com
