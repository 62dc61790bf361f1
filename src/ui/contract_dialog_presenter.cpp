#include "ui/contract_dialog_presenter.h"

#include "engine/contract_check.h"
#include "rules/combo_lists.h"
#include "ui/shared_controls.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

namespace shared = shared_controls;

constexpr std::array contractCustomerControls{
    ControlSpec{"txtKundennummer", "&Kundennummer", ControlKind::Text, "Kundennummer", "", "cmdKundennummer",
                "Kundenauskunft"},
    ControlSpec{.name = "txtVertragsnummer", .caption = "&Vertragsnummer", .column = "Vertragsnummer"},
    ControlSpec{"txtVertragsgegenstand", "&Gegenstand", ControlKind::Text, "Artikelnummer",
                "imgVertragsgegenstand", "cmdVertragsgegenstand", "Vertragsgegenstandsauskunft",
                "lblVertragsgegenstand"},
    ControlSpec{"tdbVertragsart", "Vertrags&art", ControlKind::Combo, "Vertragsart", "imgVertragsart", "", "",
                "lblVertragsart"},
    ControlSpec{.name = "txtVertragstext", .caption = "Vertrags&text", .column = "Vertragstext"},
};

constexpr std::array termControls{
    ControlSpec{"tdbAnzahl", "Anza&hl", ControlKind::Number, "Menge", "imgAnzahl"},
    ControlSpec{.name = "tdbBetrag", .caption = "&Betrag", .kind = ControlKind::Money, .column = "Preis"},
    ControlSpec{"cboIntervall", "Intervall (M&onate)", ControlKind::List, "Intervall", "imgIntervall"},
    ControlSpec{"cboZustand", "&Zustand", ControlKind::List, "Zustand", "imgZustand"},
    ControlSpec{"tdbdtVertragsdatum", "Vertragsdat&um", ControlKind::Date, "Vertragsdatum",
                "imgVertragsdatum"},
    ControlSpec{"tdbdtVertragsbeginn", "B&eginn", ControlKind::Date, "Vertragsbeginn", "imgVertragsbeginn"},
    ControlSpec{"tdbdtVertragsende", "En&de", ControlKind::Date, "Vertragsende"},
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

bool ContractDialogPresenter::isSingle() const { return kindOf(jobType()) == qxtjobverträge; }

bool ContractDialogPresenter::inPosition() const { return isSingle() && positions_.size() > 0; }

Value ContractDialogPresenter::loaded(ColumnName column) const {
  const bool taken =
      inPosition() && std::ranges::find(contractPositionColumns, column) != contractPositionColumns.end();
  return taken && positions_.has(column) ? positions_.at(0, column) : JobDialogPresenter::loaded(column);
}

void ContractDialogPresenter::fill() {
  checking("Füllen der Vertragsarten", [this] {
    ComboContent& kinds = contentOf("tdbVertragsart");
    ComboFiller filler(kinds);
    ComboLists(environment()).FillComboVertragsart(filler, text("tdbVertragsart"));
    // In this list the code is in the first column and the text in the second, which is hidden.
    kinds.codeColumn = 0;
  });
  offer("cboZustand", {{"Aktiv", "A"}, {"nur Info", "I"}, {"Erledigt", "E"}});
  offer("cboIntervall", {{"1", "1"}, {"3", "3"}, {"6", "6"}, {"12", "12"}});
  checkContract();
  reportFailure();
  checkChoices();
}

/// Tool tip and list word the message about the quantity differently on purpose.
void ContractDialogPresenter::checkContract() {
  const ContractCheck check(environment());
  answer_ = CheckStatus::Clean;
  const auto list = [this](const Findings& found, std::initializer_list<Rule> rules) {
    report(found, rules);
    answer_ = worse(answer_, found.status());
  };
  checking("Prüfen des Gegenstands", [&] {
    at("txtVertragsgegenstand").description =
        masterData().GetVertragsgegenstand(text("txtVertragsgegenstand"));
    list(check.object(fields()), {Rule::ContractObject});
  });
  list(ContractCheck::values(fields(), isSingle()),
       {Rule::ContractDate, Rule::ContractDateMissing, Rule::ContractBegin, Rule::ContractBeginMissing,
        Rule::ContractQuantity, Rule::SingleContractQuantity});
  if (ControlState& quantity = at("tdbAnzahl"); quantity.picture != CheckStatus::Clean)
    quantity.message = "Die Menge muss mindestens 1 betragen!";
  checking("Prüfen der Vertragsart", [&] {
    const ComboContent& kinds = contentOf("tdbVertragsart");
    at("tdbVertragsart").description = kinds.selected ? kinds.rows.rows[*kinds.selected][1] : "";
    list(check.kind(fields()), {Rule::ContractKind});
  });
}

void ContractDialogPresenter::checkChoices() {
  // Case matters, since it does when contracts are written.
  const std::string state = text("cboZustand");
  ComboContent& states = contentOf("cboZustand");
  if (states.selected && states.rows.rows[*states.selected][1] != state) states.selected.reset();
  report(states.selected.has_value(), Finding(Rule::ContractState, state));
  report(contentOf("cboIntervall").selected.has_value(),
         Finding(Rule::ContractInterval, text("cboIntervall")));
}

std::optional<CheckStatus> ContractDialogPresenter::verdict() const {
  return JobDialogPresenter::verdict() ? std::optional(answer_) : std::nullopt;
}

void ContractDialogPresenter::check(std::string_view /*control*/) {
  for (const std::string_view combo : {"tdbVertragsart", "cboZustand", "cboIntervall"}) select(combo);
  checkContract();
  checkChoices();
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
  // The run copies the values of the position, whatever the header holds.
  if (inPosition()) editing().saveContractPosition(jobId(), changed);
  if (verdict()) ContractCheck(environment()).checkContract(jobId());
}

} // namespace qx
