// The logged-in ERP session and its unit conversions.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// A unit conversion of an article, from the role "ME Lager" (base unit) to "ME Verkauf" (wanted unit).
struct UnitConversion {
  std::string_view article;
  std::string_view fromRole;
  std::string_view toRole;
  std::string_view fromUnit;
  std::string_view toUnit;
};

/// `Umrechnungen` of the session.
class Umrechnungen {
public:
  virtual ~Umrechnungen() = default;
  /// Base units per wanted unit. Raises `std::runtime_error` when there is no conversion.
  virtual double GetUmrechnung(const UnitConversion& conversion) = 0;
};

/// `Norvalis.Session`. Every member may raise `DatabaseError` or another `std::exception`.
class Session {
public:
  virtual ~Session() = default;

  virtual void Connect(std::string_view activeSessionId, std::string_view connectWith) = 0;
  virtual void Disconnect() = 0;
  virtual bool NotConnected() = 0;
  /// 0 is the no-error value.
  virtual std::int32_t ErrorCode() = 0;
  virtual void ShowError(std::string_view message) = 0;

  /// Shared with the component for as long as either holds it; null when not connected.
  virtual std::shared_ptr<Connection> connection() = 0;
  virtual std::string PersonalNr() = 0;
  virtual std::string SessionID() = 0;
  virtual std::string UserName() = 0;

  /// A value of the shared settings store; the default (else "") when it was never written.
  virtual std::string GetSetting(std::string_view section, std::string_view key,
                                 std::optional<std::string_view> fallback) = 0;
  virtual void SaveSetting(std::string_view section, std::string_view key, std::string_view value) = 0;

  /// The session date, on which all decisions are based.
  virtual Date GetSessionDate() = 0;
  virtual std::int16_t GetBuchungskreis() = 0;
  /// Draws the next number of a number range. Null when none can be drawn.
  virtual std::optional<std::int32_t> GetBelegnummer(std::string_view range, std::int16_t bookingCircle) = 0;
  virtual qx::Umrechnungen& Umrechnungen() = 0;
};

} // namespace qx
