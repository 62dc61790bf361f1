#include "settings/option_keys.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

constexpr std::string_view own = "ImportJob2";
constexpr auto check = OptionType::Check;
constexpr auto text = OptionType::Text;
constexpr auto number = OptionType::Number;
constexpr auto integer = OptionType::Integer;
constexpr auto article = OptionType::ArticleNumber;
constexpr auto shared = OptionStore::Shared;
constexpr auto local = OptionStore::Local;

/// A check box of the dialog's first page.
constexpr OptionKey general(std::string_view key, std::string_view control, std::string_view readers,
                            OptionStore store = shared) {
  return {own, key, check, store, OptionOwner::Component, "", control, readers, false};
}

/// A control of the dialog's second page.
constexpr OptionKey special(std::string_view key, OptionType type, std::string_view control,
                            std::string_view readers) {
  return {own, key, type, shared, OptionOwner::Component, "", control, readers, true};
}

/// A key without a control.
constexpr OptionKey hidden(std::string_view section, std::string_view key, OptionType type,
                           std::string_view readers, OptionStore store = shared) {
  return {section, key, type, store, OptionOwner::Component, "", "", readers, false};
}

/// A key of the ERP, only read.
constexpr OptionKey erpWide(std::string_view section, std::string_view key, OptionType type,
                            std::string_view fallback, std::string_view readers) {
  return {section, key, type, shared, OptionOwner::Erp, fallback, "", readers, false};
}

constexpr std::array table{
    general("Löschen", "chkLoeschen", "job view"),
    general("Ändern", "chkAendern", "job view"),
    general("FensterpositionSpeichern", "chkFensterpos", "job view", local),
    general("FenstergrößeSpeichern", "chkFenstergroe_e", "job view", local),
    general("GelöschteVerträge", "chkGelVertr_ge", ""),
    general("AutomatischPrüfen", "chkAutomatischPr_fen", ""),
    general("AutomatischVerarbeiten", "chkAutomatschVerarbeiten", "run"),
    general("WarnungLagerbestand", "chkWarnungLager", "order check, order dialog"),
    general("KundenKundengruppe", "chkKundeKundengruppe", "customers"),
    general("KundenVertreter", "chkKundeVertreter", "customers"),
    general("KundenZahlungsart", "chkKundenZahlungsart", "customers"),
    general("KundenBankleitzahl", "chkKundenBlz", "customers"),
    general("KundeAdressProof", "chkKundeAdressProof", "customer check"),
    general("KundeDelete", "chkKundeDelete", "purge"),
    general("VTDelete", "chkVTDelete", "purge"),
    general("VTImportModified", "chkVTImportModified", ""),
    general("AuftragDelete", "chkAuftragDelete", "purge"),
    general("KostenzuordnungAuftrag", "chkKostZuordnung", "order check, order dialog"),
    general("KostAutomatischAnlegen", "chkCreateKost", "cost assignment"),
    general("AuftragLieferbereit", "chkAuftLieferbereit", "order positions, job files"),
    general("AuftragFakturierbereit", "chkAuftFakturierbereit", "order positions, job files"),
    general("KreditlimitAuftrag", "chkCheckKreditlimit", "order check"),

    special("ZAVSRG", text, "txtZA_RG_VS", "order check"),
    special("ZAVS", text, "txtZAVS", "run"),
    special("VAZA", text, "txtVAZA", "run"),
    special("abGewicht", number, "txtGewicht", "orders"),
    special("VSabGewicht", text, "txtVAGewicht", "orders"),
    special("FrachtTransport", article, "txtFrachtTransport", "orders"),
    special("FrachtGebuehr", article, "txtFrachGebuehr", "orders"),
    special("VAKunde", text, "txtVAKunde", "orders"),
    special("ZAKunde", text, "txtZAKunde", "orders"),
    special("SWAuftLieferbereit", check, "chkSWLief", "orders"),
    special("SWAuftFakturierbereit", check, "chkSWFak", "orders"),
    special("NeukundenRabatt", text, "txtNeukundenRabatt", ""),
    // Read together with the fee line, but no control shows it.
    OptionKey{own, "MinGebuehr", number, shared, OptionOwner::Component, "0", "", "orders", true},

    hidden(own, "AppSettings", check, "job view"),
    hidden(own, "OnProcess", check, ""),
    hidden(own, "NewMail", text, "run, job view"),
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
    erpWide("Allgemein", "DatumMwStÄnderung", text, "", "tax"),
    erpWide("Kostenzuordnung", "Angebot", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Kundenauftrag", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Bestellung", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Anfrage", integer, "0", "cost assignment"),
    erpWide("Kostenzuordnung", "Kost1", text, "Kostenstelle", "cost assignment"),
    erpWide("Kostenzuordnung", "Kost2", text, "Kostenträger", "cost assignment"),
    erpWide("Buchungskreise", "OnNewAB", check, "", "orders"),
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

} // namespace

std::span<const OptionKey> optionKeys() { return table; }

const OptionKey* findOptionKey(std::string_view section, std::string_view key) {
  const auto* const found = std::ranges::find_if(
      table, [&](const OptionKey& option) { return option.section == section && option.key == key; });
  return found == table.end() ? nullptr : found;
}

} // namespace qx
