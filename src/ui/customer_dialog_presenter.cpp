#include "ui/customer_dialog_presenter.h"

#include "engine/customer_check.h"
#include "model/text.h"
#include "settings/settings.h"
#include "ui/shared_controls.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <vector>

namespace qx {
namespace {

namespace shared = shared_controls;

constexpr std::array customerControls{
    shared::customerNumber,
    ControlSpec{.name = "txtSuchbegriff", .caption = "S&uchbegriff", .column = "Suchbegriff"},
    shared::account,
    ControlSpec{"tdbKundengruppe", "Kunden&gruppe", ControlKind::Combo, "Kundengruppe", "imgKundengruppe"},
    shared::salesRep,
    shared::priceList,
    shared::release,
};

constexpr std::array addressControls{
    ControlSpec{.name = "txtBez1", .caption = "Bezeichnung &1", .column = "Bez1", .picture = "imgBez1"},
    ControlSpec{.name = "txtBez2", .caption = "Bezeichnung &2", .column = "Bez2", .picture = "imgBez2"},
    ControlSpec{.name = "txtBez3", .caption = "Bezeichnung &3", .column = "Bez3", .picture = "imgBez3"},
    ControlSpec{.name = "txtStrasse", .caption = "&Straße", .column = "Strasse", .picture = "imgStrasse"},
    ControlSpec{.name = "txtPLZ", .caption = "&PLZ", .column = "PLZ", .picture = "imgPLZ"},
    ControlSpec{.name = "txtOrt", .caption = "&Ort", .column = "Ort", .picture = "imgOrt"},
    ControlSpec{.name = "txtLand", .caption = "Lan&d", .column = "Land", .picture = "imgLand"},
    shared::telephone,
    shared::fax,
};

constexpr std::array paymentControls{
    shared::paymentMethod,
    shared::paymentTerms,
    ControlSpec{"tdbWährung", "Währung", ControlKind::Combo, "Währung", "imgWährung"},
    ControlSpec{"tdbWährungEG", "Währung der Eingabe", ControlKind::Combo, "WährungEingabe", "imgWährungEG"},
};

constexpr std::array individualControls{
    shared::individual1,
    ControlSpec{
        .name = "txtIndFild2", .caption = "Kennzeichen 2", .column = "IndFild2", .customerSpecific = true},
    shared::individual3,
    shared::individual4,
};

constexpr std::array customerGroups{ControlGroup{"Kunde", customerControls},
                                    ControlGroup{"Adresse", addressControls},
                                    ControlGroup{"Versand an", shared::deliveryControls},
                                    ControlGroup{"Rechnung an", shared::invoiceControls},
                                    ControlGroup{"Zahlung", paymentControls},
                                    ControlGroup{"Bank", shared::bankControls},
                                    ControlGroup{"Bemerkung", shared::noteControls},
                                    ControlGroup{"Individuell", individualControls}};

constexpr std::initializer_list<Rule> comparedRules{
    Rule::CustomerName1,    Rule::CustomerName2, Rule::CustomerName3,  Rule::CustomerStreet,
    Rule::CustomerPostCode, Rule::CustomerCity,  Rule::CustomerCountry};

} // namespace

CustomerDialogPresenter::CustomerDialogPresenter(const DialogContext& context)
    : AddressedJobDialogPresenter(context, {.grid = &contracts_, .reloadGrid = [this] { reloadGrid(); }}) {}

std::span<const ControlGroup> CustomerDialogPresenter::groups() const { return customerGroups; }

std::string CustomerDialogPresenter::title() const {
  return "Kunde " + text("txtKundennummer") + " " + text("txtBez1");
}

void CustomerDialogPresenter::fill() {
  checkHeader();
  checkAnswer();
  trying("Laden der Verträge", [this] { reloadGrid(); });
}

void CustomerDialogPresenter::reloadGrid() {
  // The stored contracts that the import no longer carries are listed as well.
  if (!readOnly() && awaitDatabase()) engine().GetDelVerträge(text("txtKundennummer"));
  contracts_.load(editing(), engine(), text("txtKundennummer"));
  checking("Prüfen der Verträge", [this] { checkContracts(); });
}

void CustomerDialogPresenter::takeAddresses(const AddressDialogPresenter& edited) {
  AddressedJobDialogPresenter::takeAddresses(edited);
  if (!readOnly()) checkAnswer();
}

void CustomerDialogPresenter::checkAnswer() {
  checking("Prüfen des Kundenvorgangs", [this] {
    const bool compare = Settings(environment())[option::compareAddresses];
    const Findings found = CustomerCheck(environment(), compare).check(fields());
    answer_ = found.status();
    // A finding without a field of its own must not be overlooked.
    findings_.clear(Rule::OtherFindings);
    const auto shown = findings_.sorted();
    const bool hasLine = std::ranges::any_of(shown, [&](const ListedFinding& finding) {
      return finding.found.rule != Rule::EarlierReasons && finding.found.severity >= answer_;
    });
    std::string text;
    for (const std::string& each : found.texts()) text += (text.empty() ? "" : "; ") + each;
    Finding others(Rule::OtherFindings, text);
    others.severity = answer_;
    findings_.report(hasLine || answer_ == CheckStatus::Clean, std::move(others));
  });
}

void CustomerDialogPresenter::checkContracts() {
  const Findings found = CustomerCheck(environment(), false).contracts(text("txtKundennummer"));
  contractAnswer_ = found.status();
  findings_.report(found, {Rule::CustomerContractErrors, Rule::CustomerContractWarnings});
}

std::optional<CheckStatus> CustomerDialogPresenter::verdict() const {
  return AddressedJobDialogPresenter::verdict() ? std::optional(worse(answer_, contractAnswer_))
                                                : std::nullopt;
}

void CustomerDialogPresenter::stored() {
  AddressedJobDialogPresenter::stored();
  checking("Prüfen der Verträge", [this] { checkContracts(); });
}

void CustomerDialogPresenter::check(std::string_view control) {
  AddressedJobDialogPresenter::check(control);
  if (control == "txtKundennummer") trying("Laden der Verträge", [this] { reloadGrid(); });
  for (const Rule rule : comparedRules)
    if (terms(rule).dialog.control == control) checkCustomer();
  checkAnswer();
}

std::optional<Finding> CustomerDialogPresenter::unknownCustomer() const {
  const std::string number = text("txtKundennummer");
  if (storedAddresses().KundeAngelegt(number)) return {};
  return number.empty() ? Finding(Rule::CustomerNumberMissing) : Finding(Rule::CustomerIsNew, number);
}

void CustomerDialogPresenter::compareCustomer(const Adresse& stored) {
  at("txtKundennummer").description = stored.Bez1;
  showDifferences(mainAddressDifferences(fields(), stored));
}

void CustomerDialogPresenter::clearComparison() { showDifferences({}); }

void CustomerDialogPresenter::showDifferences(const Findings& found) {
  report(found, comparedRules);
  for (const Rule rule : comparedRules) at(terms(rule).dialog.control).master.reset();
  for (const Finding& each : found) at(terms(each.rule).dialog.control).master = each.stored;
}

Findings CustomerDialogPresenter::addressKeys() const {
  return CustomerCheck(environment(), false).addressKeys(fields());
}

/// An emptied field counts as given, unlike one that the job leaves out.
Value CustomerDialogPresenter::current(ColumnName column) const {
  Value shown = AddressedJobDialogPresenter::current(column);
  return shown.isNull() && !loaded(column).isNull() ? Value("") : shown;
}

/// Contracts refer to their customer only by its number and would be lost under the old one.
void CustomerDialogPresenter::prepareSaving() {
  checkAnswer();
  moveContracts_ = false;
  const std::string before = staged("Kundennummer");
  if (before.empty() || equalCodes(before, text("txtKundennummer"))) return;
  trying("Laden der Verträge", [&] {
    std::size_t waiting = 0;
    for (const auto contract = editing().contractsOf(before); !contract->eof(); contract->moveNext())
      if (contract->value("JobType").integer().value_or(0) <= qxtJobKundenVerträgeError) ++waiting;
    if (waiting == 0) return;
    moveContracts_ = askQuestion(
        environment(), {(waiting == 1 ? "Ein Vertrag ist" : std::to_string(waiting) + " Verträge sind") +
                        std::string(" mit der Kundennummer ") + before + " eingegangen.\r\n" +
                        (waiting == 1 ? "Soll er" : "Sollen sie") + " auf " + text("txtKundennummer") +
                        " umgestellt werden?"});
  });
}

void CustomerDialogPresenter::store(std::string_view& failure) {
  std::vector<ColumnChange> changed = changes();
  // An emptied field clears the one of the master; null would keep it.
  for (ColumnChange& change : changed)
    if (change.content.isNull()) change.content = Value("");
  if (moveContracts_) editing().moveContracts(staged("Kundennummer"), text("txtKundennummer"));
  editing().saveCustomer(jobId(), changed, text("txtKundennummer"),
                         verdict() ? std::optional(answer_) : std::nullopt);
  storeAddresses(failure);
}

} // namespace qx
