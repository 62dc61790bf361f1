#include "ui/contract_dialog_presenter.h"

#include "engine/contract_check.h"
#include "model/date.h"
#include "rules/active_connection.h"
#include "rules/combo_lists.h"
#include "ui/shared_controls.h"

#include <algorithm>
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

} // namespace

ContractDialogPresenter::ContractDialogPresenter(const DialogContext& context)
    : JobDialogPresenter(context, {.cancelButton = "cmdCancel",
                                   .boxTitle = "Vertragsdetails",
                                   .offersRelease = false,
                                   .erases = true}) {}

std::span<const ControlGroup> ContractDialogPresenter::groups() const { return contractGroups; }

std::string ContractDialogPresenter::title() const {
  return "Vertrag " + text("txtVertragsnummer") + " zu Kunde " + text("txtKundennummer");
}

bool ContractDialogPresenter::isDone(std::int16_t jobType) const {
  return jobType == qxtJobVerträgeDone || jobType == qxtjobkundenverträgedone ||
         jobType == qxtJobKundenVerträgedel;
}

std::unique_ptr<Recordset> ContractDialogPresenter::open(std::string_view jobId) {
  positions_ = StagedRows(*openContractPositions(activeConnection(environment()), jobId));
  return editing().contractHeader(jobId);
}

bool ContractDialogPresenter::inPosition() const {
  return kindOf(jobType()) == qxtjobverträge && positions_.size() > 0;
}

Value ContractDialogPresenter::loaded(ColumnName column) const {
  const bool taken =
      inPosition() && std::ranges::find(contractPositionColumns, column) != contractPositionColumns.end();
  return taken && positions_.has(column) ? positions_.at(0, column) : JobDialogPresenter::loaded(column);
}

void ContractDialogPresenter::fill() {
  for (const std::string_view control :
       {"tdbAnzahl", "txtVertragsgegenstand", "tdbdtVertragsdatum", "tdbdtVertragsbeginn"})
    checkControl(control);
  checking("tdbVertragsart", [this] { fillKinds(); });
  reportFailure();
  checkState(offer("cboZustand", {{"Aktiv", "A"}, {"nur Info", "I"}, {"Erledigt", "E"}}));
  checkInterval(offer("cboIntervall", {{"1", "1"}, {"3", "3"}, {"6", "6"}, {"12", "12"}}));
  checkAnswer();
}

void ContractDialogPresenter::checkAnswer() {
  checking("Prüfen des Vertrags", [this] {
    answer_ = ContractCheck(environment()).check(fields(), kindOf(jobType()) == qxtjobverträge).status();
  });
}

std::optional<CheckStatus> ContractDialogPresenter::verdict() const {
  return JobDialogPresenter::verdict() ? std::optional(answer_) : std::nullopt;
}

void ContractDialogPresenter::check(std::string_view control) {
  checkControl(control);
  checkAnswer();
}

void ContractDialogPresenter::checkControl(std::string_view control) {
  if (control == "tdbAnzahl") checkQuantity();
  if (control == "txtVertragsgegenstand") checking(control, [this] { checkObject(); });
  if (control == "tdbdtVertragsdatum")
    checkDate(control, false, Rule::ContractDateMissing, Rule::ContractDate);
  if (control == "tdbdtVertragsbeginn")
    checkDate(control, true, Rule::ContractBeginMissing, Rule::ContractBegin);
  if (control == "tdbVertragsart") checkKind(select(control));
  if (control == "cboZustand") {
    checkState(select(control));
    checking("txtVertragsgegenstand", [this] { checkObject(); });
    checkKind(select("tdbVertragsart"));
  }
  if (control == "cboIntervall") checkInterval(select(control));
}

/// Tool tip and list end differently on purpose.
void ContractDialogPresenter::checkQuantity() {
  const bool fine = current("Menge").number().value_or(0) > 0;
  const bool single = kindOf(jobType()) == qxtjobverträge;
  report(fine, Finding(single ? Rule::SingleContractQuantity : Rule::ContractQuantity, text("tdbAnzahl")));
  mark("tdbAnzahl", fine ? CheckStatus::Clean : CheckStatus::Warning,
       "Die Menge muss mindestens 1 betragen!");
}

void ContractDialogPresenter::checkObject() {
  const std::string number = text("txtVertragsgegenstand");
  at("txtVertragsgegenstand").description = masterData().GetVertragsgegenstand(number);
  report(!objectMatters() || masterData().VertragsgegenstandAngelegt(number),
         Finding(Rule::ContractObject, number));
}

bool ContractDialogPresenter::objectMatters() const { return !skipsObjectChecks(text("cboZustand")); }

void ContractDialogPresenter::checkDate(std::string_view control, bool noon, Rule missing, Rule wrong) {
  const std::string typed = text(control);
  report(!contractDate(Value(typed), noon).isNull(), Finding(typed.empty() ? missing : wrong, typed));
}

void ContractDialogPresenter::fillKinds() {
  ComboContent& kinds = contentOf("tdbVertragsart");
  ComboFiller filler(kinds);
  const bool known = ComboLists(environment()).FillComboVertragsart(filler, text("tdbVertragsart"));
  // Here the code stands in the first column and the text in the second, which is hidden.
  kinds.codeColumn = 0;
  checkKind(known);
}

void ContractDialogPresenter::checkKind(bool known) {
  const ComboContent& kinds = contentOf("tdbVertragsart");
  at("tdbVertragsart").description = known && kinds.selected ? kinds.rows.rows[*kinds.selected][1] : "";
  report(known || !objectMatters(), Finding(Rule::ContractKind, text("tdbVertragsart")));
}

/// The states are compared exactly where contracts are written. One without a state is told though it is
/// written as an active one.
void ContractDialogPresenter::checkState(bool known) {
  const std::string code = text("cboZustand");
  ComboContent& states = contentOf("cboZustand");
  if (known && states.rows.rows[*states.selected][1] != code) {
    states.selected.reset();
    known = false;
  }
  report(known, Finding(Rule::ContractState, code));
}

/// Told only: contracts are written with any interval, and with the usual one when they have none.
void ContractDialogPresenter::checkInterval(bool known) {
  report(known, Finding(Rule::ContractInterval, text("cboIntervall")));
}

void ContractDialogPresenter::takeLookup(std::string_view control, const std::vector<std::string>& chosen) {
  const auto index = find(control);
  if (!index) return;
  type(*index, chosen.front());
  check(control);
}

void ContractDialogPresenter::store(std::string_view& /*failure*/) {
  const std::vector<ColumnChange> changed = changes();
  editing().save(jobId(), changed);
  // The run takes over what stands in the position, whatever the header holds.
  if (inPosition()) editing().saveContractPosition(jobId(), changed);
  if (verdict()) ContractCheck(environment()).checkContract(jobId());
}

} // namespace qx
