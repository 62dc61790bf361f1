#include "rules/tax_rules.h"

#include "rules/active_connection.h"
#include "rules/german_text.h"
#include "settings/settings.h"

#include <limits>

namespace qx {
namespace {

/// Later than every date: without a change of rates the old keys hold.
constexpr std::string_view never = "99999999999999";

std::string_view dayOf(std::string_view stamp) { return stamp.substr(0, 8); }

} // namespace

Connection& TaxRules::connection() const {
  if (environment_.session)
    if (const auto ofSession = environment_.session->connection()) return *ofSession;
  return activeConnection(environment_);
}

std::string TaxRules::changeDate() const {
  return Settings(environment_, SettingTrap::Refusals).getShared("Allgemein", "DatumMwStÄnderung", "");
}

std::int16_t TaxRules::GetSteuerschlüssel(std::string_view MwStKZKunde, std::string_view MwStKZArtikel,
                                          std::string_view Datum) const {
  const auto rows =
      connection().open(sql("SELECT * FROM Steuerschlüsselzuordnung WHERE MwStKZKunde='"_sql,
                            value(MwStKZKunde), "' AND MwStKZArtikel='"_sql, value(MwStKZArtikel), "'"_sql));
  const auto describe = [&] {
    return "the tax marks '" + std::string(MwStKZKunde) + "' and '" + std::string(MwStKZArtikel) + "'";
  };
  if (rows->eof()) throw MissingTaxKey(describe() + " have no tax key");

  bool changed = false;
  if (!trimBlanks(Datum).empty()) {
    const std::string setting = changeDate();
    const std::string_view change = trimBlanks(setting).empty() ? never : std::string_view(setting);
    // Compared as texts: the day of the change itself takes the new key.
    changed = dayOf(Datum) >= dayOf(change);
  }
  const auto key =
      changed ? rows->value("SteuerschlüsselNeu").integer() : rows->value("Steuerschlüssel").integer();
  using Limits = std::numeric_limits<std::int16_t>;
  if (!key || *key < Limits::min() || *key > Limits::max())
    throw MissingTaxKey(describe() + " have a tax key that is no 16-bit number");
  return static_cast<std::int16_t>(*key);
}

double TaxRules::GetSteuerSatz(std::string_view Steuerschlüssel) const {
  const auto rows = connection().open(
      sql("SELECT * FROM Steuerschlüssel WHERE Steuerschlüssel='"_sql, value(Steuerschlüssel), "'"_sql));
  return rows->eof() ? 0 : rows->value("MwSt_Satz").number().value_or(0);
}

std::string TaxRules::changeDateText() const {
  const std::string stamp = changeDate();
  if (trimBlanks(stamp).empty() || stamp.size() < 8) return {};
  return stamp.substr(6, 2) + "." + stamp.substr(4, 2) + "." + stamp.substr(0, 4);
}

} // namespace qx
