#include "ui/options_dialog.h"

#include <algorithm>
#include <array>
#include <exception>

namespace qx {
namespace {

constexpr std::string_view costAssignment = "chkKostZuordnung";
constexpr std::string_view costCreation = "chkCreateKost";

constexpr std::array windowTexts{
    OptionText{"chkFensterpos", "Fenster&position merken",
               "Die Importvorgänge öffnen sich dort, wo das Fenster zuletzt stand. Gilt nur für Sie."},
    OptionText{"chkFenstergroe_e", "Fenstergröße &merken",
               "Die Importvorgänge öffnen sich so groß, wie das Fenster zuletzt war. Gilt nur für Sie."},
    OptionText{"chkAendern", "Vorgänge dürfen geän&dert werden",
               "Das Recht, Importvorgänge zu ändern. Gilt für alle Arbeitsplätze."},
};
constexpr std::array checkTexts{
    OptionText{
        "chkAutomatischPr_fen", "A&utomatisch prüfen",
        "Wird für andere Programme der Installation gespeichert; die Importvorgänge selbst richten sich "
        "nicht danach."},
    OptionText{
        "chkAutomatschVerarbeiten", "Beim &Verarbeiten automatisch prüfen",
        "Kunden und Aufträge mit Warnungen oder Fehlern werden zurückgestellt statt verarbeitet, bis Sie sie "
        "freigeben. Sonst werden Kunden ungeprüft verarbeitet und nur Aufträge mit Fehlern zurückgestellt."},
    OptionText{"chkWarnungLager", "Bei fehlendem &Lagerbestand warnen",
               "Auftragspositionen, für die der Lagerbestand nicht reicht, erhalten eine Warnung."},
    OptionText{
        "chkCheckKreditlimit", "&Kreditlimit prüfen",
        "Erreichen die offenen Posten des Kunden sein Kreditlimit 1, erhält der Auftrag eine Warnung, beim "
        "Kreditlimit 2 einen Fehler."},
    OptionText{"chkKundeAdressProof", "Adre&ssen mit dem Kundenstamm vergleichen",
               "Weicht die Haupt-, Liefer- oder Rechnungsadresse vom Kundenstamm ab, erhält der Vorgang eine "
               "Warnung."},
};
constexpr std::array customerTexts{
    OptionText{
        "chkKundeKundengruppe", "Fehlende Kunden&gruppen anlegen",
        "Eine unbekannte Kundengruppe wird beim Verarbeiten angelegt; sonst endet der Vorgang mit einem "
        "Fehler."},
    OptionText{"chkKundeVertreter", "Fehlende Ver&treter anlegen",
               "Ein unbekannter Vertreter wird beim Verarbeiten angelegt; sonst endet der Vorgang mit einem "
               "Fehler."},
    OptionText{
        "chkKundenZahlungsart", "Fehlende &Zahlungsarten anlegen",
        "Eine unbekannte Zahlungsart wird beim Verarbeiten angelegt; sonst endet der Vorgang mit einem "
        "Fehler."},
    OptionText{
        "chkKundenBlz", "Fehlende &Bankleitzahlen anlegen",
        "Eine unbekannte Bankleitzahl wird beim Verarbeiten angelegt; sonst endet der Vorgang mit einem "
        "Fehler."},
};
constexpr std::array contractTexts{
    OptionText{
        "chkGelVertr_ge", "Gelöschte Ve&rträge berücksichtigen",
        "Wird für andere Programme der Installation gespeichert; die Importvorgänge selbst richten sich "
        "nicht danach."},
    OptionText{
        "chkVTImportModified", "Geänderte Verträge &einlesen",
        "Wird für andere Programme der Installation gespeichert; die Importvorgänge selbst richten sich "
        "nicht danach."},
};
constexpr std::array orderTexts{
    OptionText{"chkAuftLieferbereit", "Positionen sind l&ieferbereit",
               "Neue Auftragspositionen werden als lieferbereit eingelesen."},
    OptionText{"chkAuftFakturierbereit", "Positionen sind &fakturierbereit",
               "Neue Auftragspositionen werden als fakturierbereit eingelesen."},
    OptionText{"chkKostZuordnung", "K&ostenzuordnung prüfen",
               "Jede Auftragsposition muss eine gültige Kostenzuordnung haben."},
    OptionText{"chkCreateKost", "Fehlende Kostenzuordnungen &anlegen",
               "Eine fehlende Kostenzuordnung wird angelegt. Nur wählbar, wenn die Kostenzuordnung geprüft "
               "wird."},
};
constexpr std::array deletionTexts{
    OptionText{"chkLoeschen", "Vorgänge dürfen gelös&cht werden",
               "Der Befehl Löschen wird angeboten. Gilt für alle Arbeitsplätze."},
    OptionText{"chkKundeDelete", "Erledigte Ku&ndenvorgänge nach dem Verarbeiten löschen",
               "Am Ende jeder Verarbeitung werden die erledigten Kundenvorgänge gelöscht."},
    OptionText{"chkVTDelete", "Erledigte Vertragsvorgänge nac&h dem Verarbeiten löschen",
               "Am Ende jeder Verarbeitung werden die erledigten Vertragsvorgänge der Kunden gelöscht."},
    OptionText{"chkAuftragDelete", "Erledigte Auftragsvorgänge nach dem Verarbeiten l&öschen",
               "Am Ende jeder Verarbeitung werden die erledigten Auftragsvorgänge gelöscht."},
};
constexpr std::array paymentTexts{
    OptionText{
        "txtZA_RG_VS", "Zahlungsart bei &abweichender Anschrift:",
        "Die Zahlungsart, die ein Auftrag mit abweichender Rechnungs- und Lieferanschrift haben muss."},
    OptionText{"txtZAVS", "Zahlungsart bei abweichender &Lieferung:",
               "Die Zahlungsart bei abweichender Lieferanschrift."},
    OptionText{"txtVAZA",
               "&Versandart zur Zahlungsart:", "Die Versandart, die zu dieser Zahlungsart gehört."},
    OptionText{"txtZAKunde", "&Zahlungsart mit Frachtzeilen:",
               "Aufträge mit dieser Zahlungsart erhalten die Frachtzeilen."},
    OptionText{"txtVAKunde",
               "Versandart &mit Frachtzeilen:", "Aufträge mit dieser Versandart erhalten die Frachtzeilen."},
};
constexpr std::array freightTexts{
    OptionText{"txtGewicht", "Versandart wechselt ab &Gewicht (kg):",
               "Ab diesem Gewicht erhält der Auftrag die nebenstehende Versandart. Leer oder 0: nie."},
    OptionText{"txtVAGewicht", "Versandart ab &diesem Gewicht:",
               "Die Versandart schwerer Aufträge. Leer: sie behalten ihre Versandart."},
    OptionText{"txtFrachtTransport", "Artikel der &Transportzeile:",
               "Die Artikelnummer der Transportzeile. Leer: keine Transportzeile."},
    OptionText{"txtFrachGebuehr", "Artikel der Ge&bührenzeile:",
               "Die Artikelnummer der Gebührenzeile. Leer: keine Gebührenzeile."},
};
constexpr std::array specialOrderTexts{
    OptionText{"chkSWLief", "Geschriebene Positionen sind l&ieferbereit",
               "Die Positionen geschriebener Aufträge sind lieferbereit."},
    OptionText{"chkSWFak", "Geschriebene Positionen sind &fakturierbereit",
               "Die Positionen geschriebener Aufträge sind fakturierbereit."},
    OptionText{"txtNeukundenRabatt", "&Neukundenrabatt:", "Der Rabatt für neue Kunden."},
};

constexpr std::array groups{
    OptionGroup{"Fenster", windowTexts},
    OptionGroup{"Prüfung", checkTexts},
    OptionGroup{"Kunden", customerTexts},
    OptionGroup{"Verträge", contractTexts},
    OptionGroup{"Aufträge", orderTexts},
    OptionGroup{"Löschen", deletionTexts},
    OptionGroup{"Zahlungs- und Versandarten", paymentTexts, true},
    OptionGroup{"Fracht", freightTexts, true},
    OptionGroup{"Aufträge und Kunden", specialOrderTexts, true},
};

std::string_view applicationOf(const OptionKey& option) {
  return option.customerSpecific ? runApplicationName : applicationName;
}

bool isLocal(const OptionKey& option) { return option.store == OptionStore::Local; }

/// A check box is ticked when the readers of the option take it as on.
std::string shownValue(const OptionKey& option, const std::string& stored) {
  if (option.type != OptionType::Check) return stored;
  return checkState(option, stored).value_or(false) ? "1" : "0";
}

} // namespace

std::span<const OptionGroup> optionGroups() { return groups; }

void OptionsDialog::load() {
  fields_.clear();
  cancelled_ = false;
  customerSpecific_ = settings_.customerSpecific();
  for (const OptionKey& option : optionKeys()) {
    if (option.control.empty() || (option.customerSpecific && !customerSpecific_)) continue;
    const auto stored = settings_.read(applicationOf(option), option.section, option.key, isLocal(option));
    fields_.push_back(
        {&option, shownValue(option, stored.value_or("")), stored.has_value(), stored.has_value()});
  }
  followCostAssignment();
}

const OptionField* OptionsDialog::field(std::string_view control) const {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const OptionField& held) { return held.option->control == control; });
  return found == fields_.end() ? nullptr : &*found;
}

std::string OptionsDialog::notice() const {
  const auto unread =
      std::count_if(fields_.begin(), fields_.end(), [](const auto& f) { return !f.readable; });
  if (unread == 0) return {};
  if (static_cast<std::size_t>(unread) == fields_.size())
    return "Die Optionen konnten nicht gelesen werden und bleiben, wie sie sind.";
  return "Einige Optionen konnten nicht gelesen werden; sie sind gesperrt und bleiben, wie sie sind.";
}

OptionField* OptionsDialog::editable(std::string_view control) {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const OptionField& held) { return held.option->control == control; });
  return found == fields_.end() || !found->enabled ? nullptr : &*found;
}

void OptionsDialog::check(std::string_view control, bool on) {
  if (OptionField* const changed = editable(control)) changed->value = on ? "1" : "0";
  if (control == costAssignment) followCostAssignment();
}

void OptionsDialog::type(std::string_view control, std::string_view text) {
  if (OptionField* const changed = editable(control)) changed->value = text;
}

void OptionsDialog::followCostAssignment() {
  const OptionField* const assignment = field(costAssignment);
  for (OptionField& creation : fields_) {
    if (creation.option->control != costCreation) continue;
    creation.enabled = creation.readable && assignment->checked();
    if (!assignment->checked()) creation.value = "0";
  }
}

void OptionsDialog::close() {
  if (cancelled_) return;
  cancelled_ = true;
  const auto connection = environment_.session ? environment_.connection : nullptr;
  try {
    if (!connection) return save();
    JoinedUnit unit(*connection);
    save();
    unit.commit();
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"options could not be written", failure.what(), {}});
  }
}

void OptionsDialog::save() {
  const auto shared = [](const OptionField& held) { return !isLocal(*held.option); };
  // A first start is over only when the shared options were there to be confirmed.
  if (std::all_of(fields_.begin(), fields_.end(),
                  [&](const OptionField& held) { return held.readable || !shared(held); }))
    settings_.save(applicationName, optionSection, "AppSettings", "1");
  for (const OptionField& held : fields_)
    if (held.readable)
      settings_.save(applicationOf(*held.option), held.option->section, held.option->key, held.value,
                     isLocal(*held.option));
}

} // namespace qx
