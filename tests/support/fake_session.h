// A logged-in session without an ERP, and an environment with it.
#pragma once

#include "platform/environment.h"
#include "support/fake_desktop.h"
#include "support/fake_system.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// Shared settings in memory, a fixed date and user, no numbers and no unit conversions.
class FixedSession : public Session {
public:
  void Connect(std::string_view activeSessionId, std::string_view connectWith) override {
    calls.push_back("Connect ActiveSessionID=" + std::string(activeSessionId) +
                    " Connectwith=" + std::string(connectWith));
    notConnected = errorCode != 0;
  }
  void Disconnect() override {
    calls.emplace_back("Disconnect");
    notConnected = true;
  }
  bool NotConnected() override { return notConnected; }
  std::int32_t ErrorCode() override { return errorCode; }
  void ShowError(std::string_view message) override { calls.push_back("ShowError " + std::string(message)); }
  std::shared_ptr<Connection> connection() override { return database; }
  std::string PersonalNr() override { return "007"; }
  std::string SessionID() override { return sessionId; }
  std::string UserName() override { return "prüfer"; }
  std::string GetSetting(std::string_view section, std::string_view key,
                         std::optional<std::string_view> fallback) override;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  Date GetSessionDate() override { return date; }
  std::int16_t GetBuchungskreis() override { return 1; }
  std::optional<std::int32_t> GetBelegnummer(std::string_view, std::int16_t) override { return std::nullopt; }
  qx::Umrechnungen& Umrechnungen() override;

  std::map<std::pair<std::string, std::string>, std::string> settings;
  std::shared_ptr<Connection> database;
  Date date = makeDate(2026, 11, 24);
  std::string sessionId = "S0001";
  std::int32_t errorCode = 0;              ///< another one refuses the next connect
  std::vector<std::string> calls;          ///< of the members that connect, disconnect and tell
  qx::Umrechnungen* conversions = nullptr; ///< in place of none
  bool notConnected = false;
  bool failing = false;                       ///< every access to a setting raises `StoreError`
  std::set<std::string, std::less<>> refused; ///< keys whose access raises `StatementError`
};

/// A host that has none of the ERP's components but, perhaps, a session: creating one raises
/// `std::runtime_error`.
class AbsentComponents final : public ErpComponents {
public:
  std::shared_ptr<Session> session;

  std::shared_ptr<Session> createSession() override;
  std::unique_ptr<Protokoll> createProtokoll() override;
  std::unique_ptr<Preisfindung> createPreisfindung() override;
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection&) override { return nullptr; }
  std::unique_ptr<Version> createVersion() override;
  std::unique_ptr<Profile> createProfile() override;
  std::unique_ptr<Adressindex> createAdressindex(Connection&) override;
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override;
  std::unique_ptr<Auskunft> createAuskunft() override;
};

/// Every fake, and an environment that holds them with a `FixedSession` connected.
struct FakeWorld {
  FakeWorld() = default;
  FakeWorld(const FakeWorld&) = delete;
  FakeWorld& operator=(const FakeWorld&) = delete;

  AbsentComponents components;
  RecordingDesktop desktop;
  RecordingJobView jobView;
  FixedClock clock;
  SequentialGuids guids;
  MemoryLocalSettings localSettings;
  FixedIniFile iniFile;
  RecordingDiagnostics diagnostics;
  FixedLiveness liveness;
  std::shared_ptr<FixedSession> session = std::make_shared<FixedSession>();
  Environment environment{components, desktop,     jobView,  clock,   guids,   localSettings,
                          iniFile,    diagnostics, liveness, nullptr, session, ""};
};

} // namespace qx
