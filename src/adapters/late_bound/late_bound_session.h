// The ERP session behind `Norvalis.Session`.
#pragma once

#include "adapters/late_bound/host.h"
#include "automation/automation_object.h"
#include "platform/session.h"

#include <memory>
#include <optional>
#include <string>

namespace qx {

/// Conversions of a session, reached anew at each call.
class LateBoundConversions final : public Umrechnungen {
public:
  explicit LateBoundConversions(automation::ObjectPointer session) : session_(std::move(session)) {}
  double GetUmrechnung(const UnitConversion& conversion) override;

private:
  automation::ObjectPointer session_;
};

/// The host must outlive the session.
class LateBoundSession final : public Session, public automation::OfHost {
public:
  LateBoundSession(automation::ObjectPointer object, AutomationHost& host);

  const automation::ObjectPointer& hostObject() const override { return object_; }

  void Connect(std::string_view activeSessionId, std::string_view connectWith) override;
  void Disconnect() override;
  bool NotConnected() override;
  std::int32_t ErrorCode() override;
  void ShowError(std::string_view message) override;
  std::shared_ptr<Connection> connection() override;
  std::string PersonalNr() override;
  std::string SessionID() override;
  std::string UserName() override;
  std::string GetSetting(std::string_view section, std::string_view key,
                         std::optional<std::string_view> fallback) override;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  Date GetSessionDate() override;
  std::int16_t GetBuchungskreis() override;
  std::optional<std::int32_t> GetBelegnummer(std::string_view range, std::int16_t bookingCircle) override;
  qx::Umrechnungen& Umrechnungen() override { return conversions_; }

private:
  automation::ObjectPointer object_;
  AutomationHost& host_;
  LateBoundConversions conversions_;
  std::shared_ptr<Connection> connection_; ///< of `connectionObject_`
  automation::ObjectPointer connectionObject_;
};

} // namespace qx
