#include "adapters/hosted/host_adapters.h"

#include "adapters/late_bound/late_bound_session.h"
#include "automation/automation_error.h"

#include <algorithm>
#include <array>
#include <string>

namespace qx {
namespace {

using automation::AutomationError;
using automation::call;
using automation::ErrorNumber;
using automation::get;
using automation::ObjectPointer;
using automation::put;

[[noreturn]] void refuse(const ObjectPointer& object, std::string_view what) {
  throw AutomationError(ErrorNumber::TypeMismatch, "Ein Objekt der Klasse " +
                                                       std::string(object->className()) + " ist keine " +
                                                       std::string(what) + ".");
}

bool isSession(automation::AutomationObject& object) {
  constexpr std::array<std::string_view, 4> needed{"Connection", "PersonalNr", "GetSetting",
                                                   "GetSessionDate"};
  return std::ranges::all_of(needed,
                             [&](std::string_view name) { return object.memberId(name).has_value(); });
}

} // namespace

std::shared_ptr<Connection> HostAdapters::connectionOf(const ObjectPointer& object) {
  if (!object) return nullptr;
  if (auto known = connection_.lock(); known && known->hostObject() == object) return known;
  if (!AdoConnection::isConnection(*object)) refuse(object, "Datenbankverbindung");
  auto made = std::make_shared<AdoConnection>(object, create_);
  connection_ = made;
  return made;
}

std::shared_ptr<Session> HostAdapters::sessionOf(const ObjectPointer& object) {
  if (!isSession(*object)) refuse(object, "Sitzung der Warenwirtschaft");
  return std::make_shared<LateBoundSession>(object, *this);
}

ObjectPointer HostAdapters::objectOf(Connection& connection) {
  if (const auto* const ofHost = dynamic_cast<const automation::OfHost*>(&connection))
    return ofHost->hostObject();
  throw AutomationError(ErrorNumber::TypeMismatch,
                        "Die Komponenten der Warenwirtschaft brauchen deren eigene Datenbankverbindung.");
}

ObjectPointer HostAdapters::recordsetOf(const ComboRows& rows) {
  constexpr std::int32_t wideText = 202;
  constexpr std::int32_t longest = 255;
  ObjectPointer recordset = create("ADODB.Recordset");
  put(*recordset, "CursorLocation", ado::clientCursor);
  const ObjectPointer fields = automation::objectOf(get(*recordset, "Fields"));
  for (const std::string& column : rows.columns) call(*fields, "Append", {column, wideText, longest});
  call(*recordset, "Open");
  for (const auto& row : rows.rows) {
    call(*recordset, "AddNew");
    for (std::size_t i = 0; i < row.size(); ++i) {
      const ObjectPointer field = automation::objectOf(call(*fields, "Item", {rows.columns[i]}));
      put(*field, "Value", row[i]);
    }
    call(*recordset, "Update");
  }
  return recordset;
}

} // namespace qx
