#include "erp/standalone_session.h"

#include "erp/number_range.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace qx::erp {
namespace {

constexpr std::int16_t defaultBookingCircle = 1;

} // namespace

StandaloneSession::StandaloneSession(std::shared_ptr<Connection> connection, Clock& clock, Desktop& desktop,
                                     std::string sessionId, const StandaloneOptions& options)
    : connection_(std::move(connection)), clock_(clock), desktop_(desktop), sessionId_(std::move(sessionId)),
      userName_(options.userName), sessionDate_(options.sessionDate) {}

void StandaloneSession::Connect(std::string_view /*activeSessionId*/, std::string_view /*connectWith*/) {
  // The program owns the connection: there is no running session to join and no login.
  connected_ = connection_ != nullptr;
  errorCode_ = connected_ ? 0 : noDatabase;
}

void StandaloneSession::Disconnect() { connected_ = false; }

void StandaloneSession::ShowError(std::string_view message) {
  desktop_.show({std::string(message), std::string(defaultTitle), MessageIcon::Critical});
}

std::string StandaloneSession::PersonalNr() {
  const auto user = userRow();
  return user->eof() ? std::string() : user->text("PersonalNr");
}

std::string StandaloneSession::GetSetting(std::string_view section, std::string_view key,
                                          std::optional<std::string_view> fallback) {
  const auto rows = database().open(sql("Select Value From Einstellungen Where Section = '"_sql,
                                        value(section), "' And [Key] = '"_sql, value(key), "'"_sql));
  if (rows->eof()) return std::string(fallback.value_or(""));
  return rows->text("Value");
}

void StandaloneSession::SaveSetting(std::string_view section, std::string_view key,
                                    std::string_view setting) {
  const std::array<ColumnValue, 3> row{ColumnValue{"Section", section}, ColumnValue{"Key", key},
                                       ColumnValue{"Value", setting}};
  database().put("Einstellungen", row, 2);
}

Date StandaloneSession::GetSessionDate() { return sessionDate_.value_or(clock_.now().date); }

std::int16_t StandaloneSession::GetBuchungskreis() {
  const auto user = userRow();
  if (user->eof()) return defaultBookingCircle;
  return wholeAs<std::int16_t>(user->value("Buchungskreis")).value_or(defaultBookingCircle);
}

std::optional<std::int32_t> StandaloneSession::GetBelegnummer(std::string_view range,
                                                              std::int16_t bookingCircle) {
  return ranges_.draw(database(), range, bookingCircle);
}

Umrechnungen& StandaloneSession::Umrechnungen() {
  Connection& connection = database();
  if (!conversions_) conversions_ = std::make_unique<UnitConversions>(connection);
  return *conversions_;
}

Connection& StandaloneSession::database() {
  if (!connected_) throw std::runtime_error("Die Sitzung ist nicht mit der Datenbank verbunden.");
  return *connection_;
}

std::unique_ptr<Recordset> StandaloneSession::userRow() {
  return database().open(sql("Select PersonalNr, Buchungskreis From Benutzer Where UserName = '"_sql,
                             value(userName_), "'"_sql));
}

} // namespace qx::erp
