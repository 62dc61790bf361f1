#include "rules/tax_rules.h"

#include "model/text.h"
#include "settings/options.h"

#include <cmath>

namespace qx {
namespace {

/// Later than every date: without a change of rates the old keys apply.
constexpr std::string_view never = "99999999";

std::string_view dayOf(std::string_view stamp) { return stamp.substr(0, 8); }

} // namespace

Connection& TaxRules::connection() const {
  if (environment_.session)
    if (const auto ofSession = environment_.session->connection()) return *ofSession;
  return activeConnection(environment_);
}

std::string TaxRules::changeDay() const {
  if (!environment_.session) return {};
  const std::string setting =
      environment_.session->GetSetting(option::taxChangeDay.section, option::taxChangeDay.key, "");
  const std::string_view text = trimBlanks(setting);
  if (text.empty()) return {};
  // Only the day of a time stamp counts.
  if (parseTimeStamp(dayOf(text))) return std::string(dayOf(text));
  if (const auto day = parseGermanDate(text)) return std::string(dayOf(dayStamp(*day)));
  environment_.diagnostics.report(
      {"change of tax rates", "'" + setting + "' is not a day and is not used", ""});
  return {};
}

std::int16_t TaxRules::GetSteuerschlüssel(std::string_view MwStKZKunde, std::string_view MwStKZArtikel,
                                          std::string_view Datum) const {
  return keyOf(MwStKZKunde, MwStKZArtikel, Datum, trimBlanks(Datum).empty() ? std::string() : changeDay());
}

std::int16_t TaxRules::keyOf(std::string_view customerMark, std::string_view articleMark,
                             std::string_view stamp, std::string_view changeDay) const {
  const auto rows =
      connection().open(sql("SELECT * FROM Steuerschlüsselzuordnung WHERE MwStKZKunde='"_sql,
                            value(customerMark), "' AND MwStKZArtikel='"_sql, value(articleMark), "'"_sql));
  const auto describe = [&] {
    return "the tax marks '" + std::string(customerMark) + "' and '" + std::string(articleMark) + "'";
  };
  if (rows->eof()) throw MissingTaxKey(describe() + " have no tax key");

  // Compared as texts; the day of the change itself has the new key.
  const bool changed = !trimBlanks(stamp).empty() && dayOf(stamp) >= (changeDay.empty() ? never : changeDay);
  const auto key = wholeAs<std::int16_t>(
      rows->value(changed ? ColumnName("SteuerschlüsselNeu") : ColumnName("Steuerschlüssel")));
  if (!key) throw MissingTaxKey(describe() + " have a tax key that is not a 16-bit number");
  return *key;
}

double TaxRules::GetSteuerSatz(std::string_view Steuerschlüssel) const {
  const auto rows = connection().open(
      sql("SELECT * FROM Steuerschlüssel WHERE Steuerschlüssel='"_sql, value(Steuerschlüssel), "'"_sql));
  if (rows->eof()) return 0;
  const auto rate = rows->value("MwSt_Satz").number();
  if (!rate || !std::isfinite(*rate))
    throw MissingTaxRate("the rate of the tax key '" + std::string(Steuerschlüssel) + "' is not a number");
  return *rate;
}

} // namespace qx
