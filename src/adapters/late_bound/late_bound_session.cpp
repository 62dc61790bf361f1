#include "adapters/late_bound/late_bound_session.h"

#include "automation/automation_error.h"

#include <utility>

namespace qx {
namespace {

using automation::Variant;

/// The scope of the shared settings.
constexpr std::int32_t sharedScope = 1;

/// Texts that a component leaves null are empty.
std::string textOrEmpty(const Variant& value) {
  const Variant plain = automation::plainValue(value);
  return plain.kind() == automation::VariantKind::Null ? std::string() : automation::textOf(plain);
}

} // namespace

double LateBoundConversions::GetUmrechnung(const UnitConversion& conversion) {
  const auto conversions = automation::objectOf(automation::get(*session_, "Umrechnungen"));
  if (!conversions)
    throw automation::AutomationError(automation::ErrorNumber::ObjectNotSet,
                                      "Die Sitzung hat keine Umrechnungen.");
  // The component has eleven arguments, of which these are the ones that matter.
  constexpr std::size_t argumentCount = 11;
  std::vector<Variant> arguments{conversion.article, conversion.fromRole, conversion.toRole,
                                 conversion.fromUnit, conversion.toUnit};
  arguments.resize(argumentCount, Variant::missing());
  return automation::doubleOf(automation::call(*conversions, "GetUmrechnung", std::move(arguments)));
}

LateBoundSession::LateBoundSession(automation::ObjectPointer object, AutomationHost& host)
    : object_(std::move(object)), host_(host), conversions_(object_) {}

/// The arguments have names.
void LateBoundSession::Connect(std::string_view activeSessionId, std::string_view connectWith) {
  const auto member = object_->memberId("Connect");
  const auto session = member ? object_->parameterId(*member, "ActiveSessionID") : std::nullopt;
  const auto with = member ? object_->parameterId(*member, "Connectwith") : std::nullopt;
  if (!session || !with) {
    automation::call(*object_, "Connect", {activeSessionId, connectWith});
    return;
  }
  automation::Arguments arguments{{}, {{*session, activeSessionId}, {*with, connectWith}}};
  object_->invoke(*member, automation::Access::Method, arguments);
}

void LateBoundSession::Disconnect() { automation::call(*object_, "Disconnect"); }

bool LateBoundSession::NotConnected() {
  return automation::truthOf(automation::get(*object_, "NotConnected"));
}

std::int32_t LateBoundSession::ErrorCode() {
  return automation::int32Of(automation::get(*object_, "ErrorCode"));
}

void LateBoundSession::ShowError(std::string_view message) {
  automation::call(*object_, "ShowError", {message});
}

/// One connection for as long as the session gives the same object.
std::shared_ptr<Connection> LateBoundSession::connection() {
  auto object = automation::objectOf(automation::get(*object_, "Connection"));
  if (!object || object != connectionObject_) {
    connection_ = object ? host_.connectionOf(object) : nullptr;
    connectionObject_ = std::move(object);
  }
  return connection_;
}

std::string LateBoundSession::PersonalNr() { return textOrEmpty(automation::get(*object_, "PersonalNr")); }

std::string LateBoundSession::SessionID() { return textOrEmpty(automation::get(*object_, "SessionID")); }

std::string LateBoundSession::UserName() { return textOrEmpty(automation::get(*object_, "UserName")); }

std::string LateBoundSession::GetSetting(std::string_view section, std::string_view key,
                                         std::optional<std::string_view> fallback) {
  const Variant unset = fallback ? Variant(*fallback) : Variant::missing();
  return textOrEmpty(automation::call(*object_, "GetSetting", {section, key, unset, sharedScope}));
}

void LateBoundSession::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  automation::call(*object_, "SaveSetting", {section, key, value, Variant::missing(), sharedScope});
}

Date LateBoundSession::GetSessionDate() {
  return automation::momentOf(automation::call(*object_, "GetSessionDate")).date;
}

std::int16_t LateBoundSession::GetBuchungskreis() {
  return automation::int16Of(automation::call(*object_, "GetBuchungskreis"));
}

std::optional<std::int32_t> LateBoundSession::GetBelegnummer(std::string_view range,
                                                             std::int16_t bookingCircle) {
  const Variant number = automation::call(*object_, "GetBelegnummer", {range, bookingCircle});
  const Variant plain = automation::plainValue(number);
  if (plain.kind() == automation::VariantKind::Null || plain.kind() == automation::VariantKind::Empty)
    return std::nullopt;
  return automation::int32Of(plain);
}

} // namespace qx
