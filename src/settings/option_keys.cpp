#include "settings/option_keys.h"

#include "model/text.h"
#include "platform/value.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace qx {
namespace {

constexpr std::string_view own = "ImportJob2";
constexpr auto check = OptionType::Check;
constexpr auto text = OptionType::Text;
constexpr auto number = OptionType::Number;
constexpr auto integer = OptionType::Integer;
constexpr auto article = OptionType::ArticleNumber;
constexpr auto timestamp = OptionType::TimeStamp;
constexpr auto shared = OptionStore::Shared;
constexpr auto local = OptionStore::Local;

/// A check box of the dialog's first page.
constexpr OptionKey general(std::string_view key, std::string_view control, std::string_view readers,
                            OnRule on = OnRule::AnyNumber, OptionStore store = shared) {
  return {own, key, check, store, OptionOwner::Component, "", control, readers, false, on};
}

/// A control of the dialog's second page.
constexpr OptionKey special(std::string_view key, OptionType type, std::string_view control,
                            std::string_view readers, bool threeStates = false) {
  return {own,        key,     type,    shared, OptionOwner::Component,
          "",         control, readers, true,   OnRule::AnyNumber,
          threeStates};
}

/// A key without a control.
constexpr OptionKey hidden(std::string_view section, std::string_view key, OptionType type,
                           std::string_view readers, OptionStore store = shared) {
  return {section, key, type, store, OptionOwner::Component, "", "", readers, false};
}

/// A check without a control.
constexpr OptionKey hiddenCheck(std::string_view section, std::string_view key, std::string_view readers,
                                OptionOwner owner, OnRule on) {
  return {section, key, check, shared, owner, "", "", readers, false, on};
}

/// A key of the ERP, only read.
constexpr OptionKey erpWide(std::string_view section, std::string_view key, OptionType type,
                            std::string_view fallback, std::string_view readers) {
  return {section, key, type, shared, OptionOwner::Erp, fallback, "", readers, false};
}

constexpr std::array table{
    general("Löschen", "chkLoeschen", "job view", OnRule::Truth),
    general("Ändern", "chkAendern", "job view", OnRule::Truth),
    general("FensterpositionSpeichern", "chkFensterpos", "job view", OnRule::One, local),
    general("FenstergrößeSpeichern", "chkFenstergroe_e", "job view", OnRule::One, local),
    general("GelöschteVerträge", "chkGelVertr_ge", ""),
    general("AutomatischPrüfen", "chkAutomatischPr_fen", ""),
    general("AutomatischVerarbeiten", "chkAutomatschVerarbeiten", "run"),
    general("WarnungLagerbestand", "chkWarnungLager", "order check, order dialog"),
    general("KundenKundengruppe", "chkKundeKundengruppe", "customers"),
    general("KundenVertreter", "chkKundeVertreter", "customers"),
    general("KundenZahlungsart", "chkKundenZahlungsart", "customers"),
    general("KundenBankleitzahl", "chkKundenBlz", "customers"),
    general("KundeAdressProof", "chkKundeAdressProof", "customer check"),
    general("KundeDelete", "chkKundeDelete", "purge", OnRule::One),
    general("VTDelete", "chkVTDelete", "purge", OnRule::One),
    general("VTImportModified", "chkVTImportModified", ""),
    general("AuftragDelete", "chkAuftragDelete", "purge", OnRule::One),
    general("KostenzuordnungAuftrag", "chkKostZuordnung", "order check, order dialog", OnRule::AtLeastOne),
    general("KostAutomatischAnlegen", "chkCreateKost", "cost assignment"),
    general("AuftragLieferbereit", "chkAuftLieferbereit", "order positions, job files", OnRule::One),
    general("AuftragFakturierbereit", "chkAuftFakturierbereit", "order positions, job files", OnRule::One),
    general("KreditlimitAuftrag", "chkCheckKreditlimit", "order check", OnRule::AtLeastOne),

    special("ZAVSRG", text, "txtZA_RG_VS", "order check"),
    special("ZAVS", text, "txtZAVS", "run"),
    special("VAZA", text, "txtVAZA", "run"),
    special("abGewicht", number, "txtGewicht", "orders"),
    special("VSabGewicht", text, "txtVAGewicht", "orders"),
    special("FrachtTransport", article, "txtFrachtTransport", "orders"),
    special("FrachtGebuehr", article, "txtFrachGebuehr", "orders"),
    special("VAKunde", text, "txtVAKunde", "orders"),
    special("ZAKunde", text, "txtZAKunde", "orders"),
    special("SWAuftLieferbereit", check, "chkSWLief", "orders", true),
    special("SWAuftFakturierbereit", check, "chkSWFak", "orders", true),
    special("NeukundenRabatt", text, "txtNeukundenRabatt", ""),
    // Read together with the fee line, but no control shows it.
    OptionKey{own, "MinGebuehr", number, shared, OptionOwner::Component, "0", "", "orders", true},

    hiddenCheck(own, "AppSettings", "job view", OptionOwner::Component, OnRule::One),
    hidden(own, "OnProcess", check, ""),
    hiddenCheck(own, "NewMail", "run, job view", OptionOwner::Component, OnRule::One),
    hidden(own, "ProtoID", text, "protocol"),
    hidden(own, "ProtoDate", text, "protocol"),
    // The view clears this one while a run sets the one above: two values of one name, on purpose.
    hidden("Process", "OnProcess", check, ""),
    hidden("MAIN", "MainWidth", integer, "job view", local),
    hidden("MAIN", "MainHeight", integer, "job view", local),
    hidden("MAIN", "MainState", integer, "job view", local),
    hidden("MAIN", "MainLeft", integer, "job view", local),
    hidden("MAIN", "MainTop", integer, "job view", local),

    erpWide("Allgemein", "Individual", text, "", "run, orders, dialogs"),
    erpWide("Allgemein", "Landeswährung", text, "DM", "session"),
    erpWide("Allgemein", "DatumMwStÄnderung", timestamp, "", "tax"),
    erpWide("Kostenzuordnung", "Angebot", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Kundenauftrag", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Bestellung", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Anfrage", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Kost1", text, "Kostenstelle", "cost assignment"),
    erpWide("Kostenzuordnung", "Kost2", text, "Kostenträger", "cost assignment"),
    hiddenCheck("Buchungskreise", "OnNewAB", "orders", OptionOwner::Erp, OnRule::One),
    erpWide("OP-Info", "Kreditlimit1", number, "", "credit limit"),
    erpWide("OP-Info", "Kreditlimit2", number, "", "credit limit"),
};

constexpr bool keysAreUnique() {
  for (std::size_t i = 0; i < table.size(); ++i)
    for (std::size_t j = i + 1; j < table.size(); ++j)
      if (table[i].section == table[j].section && table[i].key == table[j].key) return false;
  return true;
}
static_assert(keysAreUnique());

/// A word or a number of any size, with a comma or a point.
std::optional<bool> truthOf(std::string_view text) {
  if (equalCodes(text, "true") || equalCodes(text, "wahr")) return true;
  if (equalCodes(text, "false") || equalCodes(text, "falsch")) return false;
  std::string digits(text);
  std::ranges::replace(digits, ',', '.');
  const auto number = Value(digits).number();
  return number ? std::optional(*number != 0) : std::nullopt;
}

} // namespace

std::span<const OptionKey> optionKeys() { return table; }

std::optional<bool> checkState(const OptionKey& option, std::string_view text) {
  const auto number = settingToInt16(text);
  switch (option.on) {
  case OnRule::One:
    if (text != "0" && text != "1") return std::nullopt;
    break;
  case OnRule::AtLeastOne:
    if (number < 0) return std::nullopt;
    break;
  case OnRule::Truth:
    return truthOf(text);
  case OnRule::AnyNumber:
    break;
  }
  return number ? std::optional(*number != 0) : std::nullopt;
}

std::optional<std::int16_t> settingToInt16(std::string_view text) {
  const auto whole = Value(text).integer();
  using Limits = std::numeric_limits<std::int16_t>;
  if (!whole || *whole < Limits::min() || *whole > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(*whole);
}

const OptionKey* findOptionKey(std::string_view section, std::string_view key) {
  const auto* const found = std::ranges::find_if(
      table, [&](const OptionKey& option) { return option.section == section && option.key == key; });
  return found == table.end() ? nullptr : found;
}

} // namespace qx
