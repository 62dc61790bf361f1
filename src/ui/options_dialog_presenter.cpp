#include "ui/options_dialog_presenter.h"

#include "model/german_text.h"
#include "platform/german_cause.h"
#include "platform/show_message.h"

#include <algorithm>
#include <array>
#include <exception>

namespace qx {
namespace {

constexpr std::string_view costAssignment = "chkKostZuordnung";
constexpr std::string_view costCreation = "chkCreateKost";

/// The hint of an option that no part of the component reads.
constexpr std::string_view storedForOthers =
    "Wird für andere Programme der Installation gespeichert; die Importvorgänge selbst richten sich "
    "nicht danach.";

constexpr std::array windowTexts{
    OptionText{"chkFensterpos", "Fenster&position merken",
               "Die Importvorgänge öffnen sich dort, wo das Fenster zuletzt stand. Gilt nur für Sie."},
    OptionText{"chkFenstergroe_e", "Fenstergröße &merken",
               "Die Importvorgänge öffnen sich so groß, wie das Fenster zuletzt war. Gilt nur für Sie."},
    OptionText{
        "chkAendern", "Vorgänge dürfen geän&dert werden",
        "Wird für alle Arbeitsplätze gespeichert; die Importvorgänge selbst richten sich nicht danach."},
};
constexpr std::array checkTexts{
    OptionText{"chkAutomatischPr_fen", "A&utomatisch prüfen", storedForOthers},
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
    OptionText{
        "chkKundeAdressProof", "Adre&ssen mit dem Kundenstamm vergleichen",
        "Weicht die Haupt-, Liefer- oder Rechnungsadresse eines Kundenvorgangs vom Kundenstamm ab, erhält "
        "er beim Prüfen eine Warnung; beim Verarbeiten nur, wenn dort automatisch geprüft wird."},
};
constexpr std::array customerTexts{
    OptionText{
        "chkKundeKundengruppe", "Fehlende Kunden&gruppen anlegen",
        "Eine unbekannte Kundengruppe wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
        "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
        "zurückgestellt."},
    OptionText{
        "chkKundeVertreter", "Fehlende Ver&treter anlegen",
        "Ein unbekannter Vertreter wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
        "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
        "zurückgestellt."},
    OptionText{
        "chkKundenZahlungsart", "Fehlende &Zahlungsarten anlegen",
        "Eine unbekannte Zahlungsart wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
        "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
        "zurückgestellt."},
    OptionText{
        "chkKundenBlz", "Fehlende &Bankleitzahlen anlegen",
        "Eine unbekannte Bankleitzahl wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
        "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
        "zurückgestellt."},
};
constexpr std::array contractTexts{
    OptionText{"chkGelVertr_ge", "Gelöschte Ve&rträge berücksichtigen", storedForOthers},
    OptionText{"chkVTImportModified", "Geänderte Verträge &einlesen", storedForOthers},
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
    OptionText{"txtZAVS", "Zahlungsart bei abweichender &Lieferung:", storedForOthers},
    OptionText{"txtVAZA", "&Versandart zur Zahlungsart:", storedForOthers},
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
               "Angekreuzt: Alle Positionen geschriebener Aufträge sind lieferbereit. Leer: Keine ist es. "
               "Dazwischen: Jede behält ihre eigene Angabe."},
    OptionText{"chkSWFak", "Geschriebene Positionen sind &fakturierbereit",
               "Angekreuzt: Alle Positionen geschriebener Aufträge sind fakturierbereit. Leer: Keine ist es. "
               "Dazwischen: Jede behält ihre eigene Angabe."},
    OptionText{"txtNeukundenRabatt", "&Neukundenrabatt:", storedForOthers},
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
  const auto state = checkState(option, stored);
  if (!state && option.threeStates) return "";
  return state.value_or(false) ? "1" : "0";
}

/// What stands beside a control, without the mark of its access key.
std::string captionOf(std::string_view control) {
  for (const OptionGroup& group : groups)
    for (const OptionText& text : group.options)
      if (text.control == control) {
        std::string caption(text.caption);
        std::erase(caption, '&');
        return caption;
      }
  return {};
}

/// A clerk who is shown nothing meanwhile does not wait longer for another program than this.
class OptionsWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds waited) override { return waited < std::chrono::seconds(5); }
};

} // namespace

std::span<const OptionGroup> optionGroups() { return groups; }

void OptionsDialogPresenter::load() {
  fields_.clear();
  ended_ = false;
  confirmed_ = settings_.isOn("AppSettings");
  customerSpecific_ = settings_.customerSpecific();
  for (const OptionKey& option : optionKeys()) {
    if (option.control.empty() || (option.customerSpecific && !customerSpecific_)) continue;
    const auto stored = settings_.read(applicationOf(option), option.section, option.key, isLocal(option));
    const std::string shown = shownValue(option, stored.value_or(""));
    fields_.push_back(
        {&option, shown, stored.has_value(), stored.has_value(), shown, stored.value_or("").empty()});
  }
  followCostAssignment();
}

const OptionField* OptionsDialogPresenter::field(std::string_view control) const {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const OptionField& held) { return held.option->control == control; });
  return found == fields_.end() ? nullptr : &*found;
}

std::string OptionsDialogPresenter::notice() const {
  const auto unread =
      std::count_if(fields_.begin(), fields_.end(), [](const auto& f) { return !f.readable; });
  if (unread == 0) return {};
  if (static_cast<std::size_t>(unread) == fields_.size())
    return "Die Optionen konnten nicht gelesen werden und bleiben, wie sie sind.";
  return "Einige Optionen konnten nicht gelesen werden; sie sind gesperrt und bleiben, wie sie sind.";
}

OptionField* OptionsDialogPresenter::editable(std::string_view control) {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const OptionField& held) { return held.option->control == control; });
  return found == fields_.end() || !found->enabled ? nullptr : &*found;
}

void OptionsDialogPresenter::check(std::string_view control, bool on) {
  if (OptionField* const changed = editable(control)) changed->value = on ? "1" : "0";
  if (control == costAssignment) followCostAssignment();
}

void OptionsDialogPresenter::unset(std::string_view control) {
  OptionField* const changed = editable(control);
  if (changed != nullptr && changed->option->threeStates) changed->value.clear();
}

void OptionsDialogPresenter::type(std::string_view control, std::string_view text) {
  if (OptionField* const changed = editable(control)) changed->value = text;
}

void OptionsDialogPresenter::followCostAssignment() {
  const OptionField* const assignment = field(costAssignment);
  for (OptionField& creation : fields_) {
    if (creation.option->control != costCreation) continue;
    // Whether an assignment that could not be read allows it, nobody knows.
    creation.readable = creation.readable && assignment->readable;
    creation.enabled = creation.readable && assignment->checked();
    if (creation.readable && !assignment->checked()) creation.value = "0";
  }
}

bool OptionsDialogPresenter::close(BusyWait* wait) {
  if (ended_ || fields_.empty()) return true;
  if (!numbersAreReadable()) return false;
  try {
    save(settings_, OptionStore::Local);
    saveShared(wait);
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"options could not be written", failure.what(), {}});
    showMessage(environment_, {"Die Optionen wurden nicht gespeichert. " + germanCause(failure) +
                                   "\nIhre Angaben stehen noch im Fenster. Drücken Sie OK, um es noch einmal "
                                   "zu versuchen.",
                               std::string(defaultTitle), MessageIcon::Critical});
    return false;
  }
  ended_ = true;
  return true;
}

/// Of the fields that would be written; the first that is none is told.
bool OptionsDialogPresenter::numbersAreReadable() {
  wrongControl_ = {};
  for (const OptionField& held : fields_) {
    if (held.option->type != OptionType::Number || held.value.empty() || !mustBeWritten(held)) continue;
    std::string text = captionOf(held.option->control) + " '" + held.value + "' ";
    if (const auto readings = readingsOf(held.value))
      text += "kann " + germanNumber(readings->thousands) + " oder " + germanNumber(readings->decimals) +
              " bedeuten. Geben Sie bitte eines davon ein.";
    else if (!parseTypedNumber(held.value))
      text += "ist keine Zahl. Bitte berichtigen Sie das Feld.";
    else
      continue;
    wrongControl_ = held.option->control;
    showMessage(environment_, {std::move(text), std::string(defaultTitle), MessageIcon::Exclamation});
    return false;
  }
  return true;
}

/// What was not touched keeps its text, whatever it is. Only the first confirmation also stores what has
/// never been stored.
bool OptionsDialogPresenter::mustBeWritten(const OptionField& held) const {
  return held.readable && (held.value != held.loaded || (!confirmed_ && held.absent));
}

void OptionsDialogPresenter::saveShared(BusyWait* wait) {
  const auto isShared = [](const OptionField& held) { return !isLocal(*held.option); };
  // A first start is over only when the shared options were there to be confirmed.
  const bool confirms =
      std::ranges::all_of(fields_, [&](const OptionField& held) { return held.readable || !isShared(held); });
  if (!confirms && std::ranges::none_of(fields_, [&](const OptionField& held) {
        return isShared(held) && mustBeWritten(held);
      }))
    return;
  const Settings settings(environment_, SettingTrap::Refusals);
  const auto write = [&] {
    if (confirms) settings.save(applicationName, optionSection, "AppSettings", "1");
    save(settings, OptionStore::Shared);
  };
  const auto connection = environment_.session ? environment_.connection : nullptr;
  if (!connection) return write();
  OptionsWait brief;
  JoinedUnit unit(*connection, wait != nullptr ? wait : &brief);
  write();
  unit.commit();
}

void OptionsDialogPresenter::save(const Settings& settings, OptionStore store) const {
  for (const OptionField& held : fields_)
    if (held.option->store == store && mustBeWritten(held))
      settings.save(applicationOf(*held.option), held.option->section, held.option->key, held.value,
                    isLocal(*held.option));
}

} // namespace qx
