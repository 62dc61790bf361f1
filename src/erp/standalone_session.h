// The session of the standalone ERP, and the options that it starts with.
#pragma once

#include "erp/number_range.h"
#include "erp/process_identity.h"
#include "erp/unit_conversions.h"
#include "model/date.h"
#include "platform/desktop.h"
#include "platform/session.h"

#include <memory>
#include <optional>
#include <string>

namespace qx::erp {

struct StandaloneOptions {
  std::string userName;            ///< a name without a row in the users table is accepted
  std::optional<Date> sessionDate; ///< the clock's day when empty
  std::string applicationDirectory;
  std::string version = "6.3.0"; ///< the answer of the version component
};

/// A login of one user on the shared connection. Before `Connect` and after `Disconnect` every member that
/// needs the database raises `std::runtime_error`.
class StandaloneSession final : public Session {
public:
  /// The error code of a session that has no database to connect to.
  static constexpr std::int32_t noDatabase = 1;

  /// `clock` and `desktop` must outlive the session.
  StandaloneSession(std::shared_ptr<Connection> connection, Clock& clock, Desktop& desktop,
                    std::string sessionId, const StandaloneOptions& options);

  void Connect(std::string_view activeSessionId, std::string_view connectWith) override;
  void Disconnect() override;
  bool NotConnected() override { return !connected_; }
  std::int32_t ErrorCode() override { return errorCode_; }
  void ShowError(std::string_view message) override;

  std::shared_ptr<Connection> connection() override { return connected_ ? connection_ : nullptr; }
  std::string PersonalNr() override;
  std::string SessionID() override { return sessionId_; }
  std::string UserName() override { return userName_; }

  std::string GetSetting(std::string_view section, std::string_view key,
                         std::optional<std::string_view> fallback) override;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view setting) override;

  Date GetSessionDate() override;
  std::int16_t GetBuchungskreis() override;
  std::optional<std::int32_t> GetBelegnummer(std::string_view range, std::int16_t bookingCircle) override;
  qx::Umrechnungen& Umrechnungen() override;

private:
  Connection& database();
  std::unique_ptr<Recordset> userRow();

  std::shared_ptr<Connection> connection_;
  Clock& clock_;
  Desktop& desktop_;
  std::string sessionId_;
  std::string userName_;
  std::optional<Date> sessionDate_;
  NumberRanges ranges_;
  std::unique_ptr<UnitConversions> conversions_;
  bool connected_ = false;
  std::int32_t errorCode_ = 0;
};

} // namespace qx::erp
