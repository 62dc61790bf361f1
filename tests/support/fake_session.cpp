#include "support/fake_session.h"

#include <stdexcept>

namespace qx {
namespace {

[[noreturn]] void absent(const std::string& component) {
  throw std::runtime_error("the component " + component + " is not installed");
}

} // namespace

std::string FixedSession::GetSetting(std::string_view section, std::string_view key,
                                     std::optional<std::string_view> fallback) {
  if (failing) throw StoreError("the settings table cannot be read", 10);
  if (refused.contains(key)) throw StatementError("the setting cannot be read", 1);
  const auto found = settings.find({std::string(section), std::string(key)});
  return found == settings.end() ? std::string(fallback.value_or("")) : found->second;
}

void FixedSession::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  if (failing) throw StoreError("the settings table cannot be written", 8);
  if (refused.contains(key)) throw StatementError("the setting cannot be written", 1);
  settings[{std::string(section), std::string(key)}] = value;
}

qx::Umrechnungen& FixedSession::Umrechnungen() {
  if (conversions == nullptr) absent("Umrechnungen");
  return *conversions;
}

std::shared_ptr<Session> AbsentComponents::createSession() {
  if (!session) absent("Norvalis.Session");
  return session;
}
std::unique_ptr<Protokoll> AbsentComponents::createProtokoll() { absent("QXHProto.Protokoll"); }
std::unique_ptr<Preisfindung> AbsentComponents::createPreisfindung() { absent("qxPLU.clsPLU"); }
std::unique_ptr<Version> AbsentComponents::createVersion() { absent("qxWWSVer.Version"); }
std::unique_ptr<Profile> AbsentComponents::createProfile() { absent("qxWSPro.WSProfile"); }
std::unique_ptr<Adressindex> AbsentComponents::createAdressindex(Connection&) {
  absent("qxAdrIdx.Adressindex");
}
std::unique_ptr<FibuUebergabe> AbsentComponents::createFibuUebergabe() {
  absent("Norvalis.FibuUebergabeObject");
}
std::unique_ptr<Auskunft> AbsentComponents::createAuskunft() { absent("Norvalis.AuskunftObject"); }

} // namespace qx
