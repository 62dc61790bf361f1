// The tables of connection and session, as hosts and late-bound components meet them.
#include "automation/classes/contents.h"

namespace qx::automation {
namespace {

std::vector<Member> sessionMembers() {
  using M = MembersOf<Session>;
  using Text = std::string_view;
  return {
      M::method("Connect", "Joins a session.", &Session::Connect, "ActiveSessionID", "Connectwith"),
      M::method("Disconnect", "Leaves the session.", &Session::Disconnect),
      M::property("NotConnected", "True before a connect and after a disconnect.", &Session::NotConnected),
      M::property("ErrorCode", "0 for no error.", &Session::ErrorCode),
      M::method("ShowError", "Shows why the connect failed.", &Session::ShowError, "Message"),
      M::property("Connection", "The database connection.", &Session::connection),
      M::property("PersonalNr", "The personnel number of the user.", &Session::PersonalNr),
      M::property("SessionID", "The identity of the session.", &Session::SessionID),
      M::property("UserName", "The name of the user.", &Session::UserName),
      M::method(
          "GetSetting", "A shared setting, or the default.",
          +[](Session& session, Text section, Text key, std::optional<Text> fallback,
              const Value& /*scope*/) -> std::string { return session.GetSetting(section, key, fallback); },
          "Section", "Key", optional("Default"), optional("Scope")),
      M::method(
          "SaveSetting", "Stores a shared setting.",
          +[](Session& session, Text section, Text key, Text setting, const Value& /*unused*/,
              const Value& /*scope*/) { session.SaveSetting(section, key, setting); },
          "Section", "Key", "Setting", optional("Unused"), optional("Scope")),
      M::method("GetSessionDate", "The date on which decisions are based.", &Session::GetSessionDate),
      M::method("GetBuchungskreis", "The booking circle.", &Session::GetBuchungskreis),
      M::method(
          "GetBelegnummer", "The next number of a range; Null when none can be drawn.",
          +[](Session& session, Text range, std::int16_t circle) -> Value {
            const auto number = session.GetBelegnummer(range, circle);
            return number ? Value(*number) : Value::null();
          },
          "Nummernkreis", "Buchungskreis"),
      M::property(
          "Umrechnungen", "The conversions of units.",
          +[](CallOn<Session> on) -> std::shared_ptr<Umrechnungen> {
            // Lives as long as its session.
            return {targetOf<Session>(on.self), &on.target.Umrechnungen()};
          }),
  };
}

/// Six more arguments, which say how the ERP's own conversions are made, are taken and mean nothing here.
std::vector<Member> conversionMembers() {
  using Text = std::string_view;
  using Ignored = const Value&;
  return {MembersOf<Umrechnungen>::method(
      "GetUmrechnung", "Base units per wanted unit.",
      +[](Umrechnungen& conversions, Text article, Text fromRole, Text toRole, Text fromUnit, Text toUnit,
          Ignored, Ignored, Ignored, Ignored, Ignored, Ignored) -> double {
        return conversions.GetUmrechnung({article, fromRole, toRole, fromUnit, toUnit});
      },
      "Artikelnummer", "VonArt", "NachArt", "VonEinheit", "NachEinheit", optional("Weitere1"),
      optional("Weitere2"), optional("Weitere3"), optional("Weitere4"), optional("Weitere5"),
      optional("Weitere6"))};
}

} // namespace

const ClassTable& ClassOf<Connection>::table() {
  static const ClassTable table(
      name, "The component's own database connection.",
      {MembersOf<Connection>::property("ConnectionString", "How it was opened, without passwords.",
                                       &Connection::connectionString)});
  return table;
}

const ClassTable& ClassOf<Session>::table() {
  static const ClassTable table(name, "The session of the ERP.", sessionMembers());
  return table;
}

const ClassTable& ClassOf<Umrechnungen>::table() {
  static const ClassTable table(name, "Conversions between units of quantity.", conversionMembers());
  return table;
}

} // namespace qx::automation
