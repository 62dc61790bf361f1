#include "ui/contract_dialog.h"

#include "engine/contract_check.h"
#include "model/date.h"
#include "rules/german_text.h"
#include "ui/shared_controls.h"

#include <array>

namespace qx {
namespace {

namespace shared = shared_controls;

constexpr std::array contractCustomerControls{
    ControlSpec{.name = "txtKundennummer",
                .caption = "&Kundennummer",
                .column = "Kundennummer",
                .button = "cmdKundennummer",
                .lookup = "Kundenauskunft"},
    ControlSpec{.name = "txtVertragsnummer", .caption = "&Vertragsnummer", .column = "Vertragsnummer"},
    ControlSpec{.name = "txtVertragsgegenstand",
                .caption = "&Gegenstand",
                .column = "Artikelnummer",
                .picture = "imgVertragsgegenstand",
                .button = "cmdVertragsgegenstand",
                .lookup = "Vertragsgegenstandsauskunft",
                .description = "lblVertragsgegenstand"},
    ControlSpec{.name = "tdbVertragsart",
                .caption = "Vertrags&art",
                .kind = ControlKind::Combo,
                .column = "Vertragsart",
                .picture = "imgVertragsart",
                .description = "lblVertragsart"},
    ControlSpec{.name = "txtVertragstext", .caption = "Vertrags&text", .column = "Vertragstext"},
};

constexpr std::array termControls{
    ControlSpec{.name = "tdbAnzahl",
                .caption = "Anza&hl",
                .kind = ControlKind::Number,
                .column = "Menge",
                .picture = "imgAnzahl"},
    ControlSpec{.name = "tdbBetrag", .caption = "&Betrag", .kind = ControlKind::Number, .column = "Preis"},
    ControlSpec{.name = "cboIntervall",
                .caption = "Intervall (M&onate)",
                .kind = ControlKind::List,
                .column = "Intervall",
                .picture = "imgIntervall"},
    ControlSpec{.name = "cboZustand",
                .caption = "&Zustand",
                .kind = ControlKind::List,
                .column = "Zustand",
                .picture = "imgZustand"},
    ControlSpec{.name = "tdbdtVertragsdatum",
                .caption = "Vertragsdat&um",
                .kind = ControlKind::Date,
                .column = "Vertragsdatum",
                .picture = "imgVertragsdatum"},
    ControlSpec{.name = "tdbdtVertragsbeginn",
                .caption = "B&eginn",
                .kind = ControlKind::Date,
                .column = "Vertragsbeginn",
                .picture = "imgVertragsbeginn"},
    ControlSpec{
        .name = "tdbdtVertragsende", .caption = "En&de", .kind = ControlKind::Date, .column = "Vertragsende"},
    ControlSpec{.name = "txtGrund", .caption = "Kündigung&sgrund", .column = "Kündigungsgrund"},
    shared::release,
};

constexpr std::array contractGroups{ControlGroup{"Vertrag", contractCustomerControls},
                                    ControlGroup{"Konditionen und Laufzeit", termControls}};

CheckStatus errorUnless(bool fine) { return fine ? CheckStatus::Clean : CheckStatus::Error; }

JobState stateFor(CheckStatus status) {
  if (status == CheckStatus::Error) return JobState::Error;
  return status == CheckStatus::Warning ? JobState::Warning : JobState::Waiting;
}

} // namespace

std::span<const ControlGroup> ContractDialog::groups() const { return contractGroups; }

std::string ContractDialog::title() const {
  return "Vertrag " + text("txtVertragsnummer") + " zu Kunde " + text("txtKundennummer");
}

bool ContractDialog::isDone(std::int16_t jobType) const {
  return jobType == qxtJobVerträgeDone || jobType == qxtjobkundenverträgedone ||
         jobType == qxtJobKundenVerträgedel;
}

std::unique_ptr<Recordset> ContractDialog::open(std::string_view jobId) {
  return editing().contractHeader(jobId);
}

void ContractDialog::fill() {
  for (const std::string_view control :
       {"tdbAnzahl", "txtVertragsgegenstand", "tdbdtVertragsdatum", "tdbdtVertragsbeginn"})
    check(control);
  checking("tdbVertragsart", [this] { fillKinds(); });
  reportFailure();
  checkState(offer("cboZustand", {{"Aktiv", "A"}, {"nur Info", "I"}, {"Erledigt", "E"}}));
  checkInterval(offer("cboIntervall", {{"1", "1"}, {"3", "3"}, {"6", "6"}, {"12", "12"}}));
}

void ContractDialog::check(std::string_view control) {
  if (control == "tdbAnzahl") checkQuantity();
  if (control == "txtVertragsgegenstand") checking(control, [this] { checkObject(); });
  if (control == "tdbdtVertragsdatum") checkDate(control, "VD", "Vertragsdatum wurde nicht angegeben");
  if (control == "tdbdtVertragsbeginn") checkDate(control, "VB", "Vertragsbeginn wurde nicht angegeben");
  if (control == "tdbVertragsart") checkKind(select(control));
  if (control == "cboZustand") checkState(select(control));
  if (control == "cboIntervall") checkInterval(select(control));
}

/// Tool tip and list end differently on purpose.
void ContractDialog::checkQuantity() {
  const bool fine = parseEnteredNumber(text("tdbAnzahl")).value_or(0) > 0;
  report("ME", "tdbAnzahl", warningUnless(fine), "Die Menge muss mindestens 1 betragen.");
  mark("tdbAnzahl", warningUnless(fine), "Die Menge muss mindestens 1 betragen!");
}

void ContractDialog::checkObject() {
  const std::string number = text("txtVertragsgegenstand");
  at("txtVertragsgegenstand").description = engine().GetVertragsgegenstand(number);
  report("VGG", "txtVertragsgegenstand", errorUnless(engine().VertragsgegenstandAngelegt(number)),
         "Vertragsgegenstand: " + number + " wurde nicht angelegt.");
}

void ContractDialog::checkDate(std::string_view control, std::string_view code, std::string_view message) {
  report(code, control, errorUnless(!text(control).empty()), std::string(message));
}

void ContractDialog::fillKinds() {
  ComboContent& kinds = contentOf("tdbVertragsart");
  ComboFiller filler(kinds);
  const bool known = engine().FillComboVertragsart(filler, text("tdbVertragsart"));
  // Here the code stands in the first column and the text in the second, which is hidden.
  kinds.codeColumn = 0;
  checkKind(known);
}

void ContractDialog::checkKind(bool known) {
  const ComboContent& kinds = contentOf("tdbVertragsart");
  at("tdbVertragsart").description = known && kinds.selected ? kinds.rows.rows[*kinds.selected][1] : "";
  report("VA", "tdbVertragsart", warningUnless(known),
         "Die Vertragsart: " + text("tdbVertragsart") + " ist noch nicht angelegt.");
}

void ContractDialog::checkState(bool known) {
  report("ZD", "cboZustand", warningUnless(known), "Zustand konnte nicht ermittelt werden.");
}

void ContractDialog::checkInterval(bool known) {
  report("INT", "cboIntervall", warningUnless(known),
         "Intervall: " + text("cboIntervall") + " nicht zulässig!");
}

void ContractDialog::takeLookup(std::string_view control, const std::vector<std::string>& chosen) {
  const auto place = find(control);
  if (!place) return;
  type(*place, chosen.front());
  check(control);
}

void ContractDialog::prepareSaving() {
  // What will stand in the row.
  const ContractFields fields = [&](ColumnName column) -> Value {
    for (std::size_t place = 0; place < specs().size(); ++place)
      if (!specs()[place]->column.empty() && ColumnName(specs()[place]->column) == column)
        return columnValue(*specs()[place], control(place));
    return job().header.at(0, column);
  };
  const bool single = kindOf(jobType()) == qxtjobverträge;
  checking("Prüfen des Vertrags",
           [&] { reasons_ = ContractCheck(environment()).check(fields, single).text; });
}

void ContractDialog::store() {
  std::vector<ColumnChange> all = changes();
  if (const auto status = verdict()) {
    all.push_back({"JobType", Value(withState(jobType(), stateFor(*status)))});
    all.push_back({"Status", Value(static_cast<std::int16_t>(*status))});
    all.push_back({"ImportType", Value(static_cast<std::int16_t>(*status))});
    all.push_back({"Fehlertext", emptyToNull(Value(reasons_))});
  }
  editing().save(jobId(), all);
}

bool ContractDialog::erase() {
  if (readOnly()) return false;
  Message question{"Wollen Sie diesen Importvorgang wirklich löschen?", "Wirklich löschen?"};
  if (!environment().desktop.ask(question)) return false;
  std::string_view failure = "Fehler beim Löschen des Vorgangs";
  return edit(failure, [this] { editing().deleteHeader(jobId()); });
}

} // namespace qx
