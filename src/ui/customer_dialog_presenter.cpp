#include "ui/customer_dialog_presenter.h"

#include "engine/customer_proof.h"
#include "model/text.h"
#include "platform/show_message.h"
#include "settings/settings.h"
#include "ui/shared_controls.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace qx {
namespace {

namespace shared = shared_controls;

constexpr std::array customerControls{
    shared::customerNumber,
    ControlSpec{.name = "txtSuchbegriff", .caption = "S&uchbegriff", .column = "Suchbegriff"},
    shared::account,
    ControlSpec{.name = "tdbKundengruppe",
                .caption = "Kunden&gruppe",
                .kind = ControlKind::Combo,
                .column = "Kundengruppe",
                .picture = "imgKundengruppe"},
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
    ControlSpec{.name = "tdbWährung",
                .caption = "Währung",
                .kind = ControlKind::Combo,
                .column = "Währung",
                .picture = "imgWährung"},
    ControlSpec{.name = "tdbWährungEG",
                .caption = "Währung der Eingabe",
                .kind = ControlKind::Combo,
                .column = "WährungEingabe",
                .picture = "imgWährungEG"},
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

} // namespace

CustomerDialogPresenter::CustomerDialogPresenter(const DialogContext& context)
    : AddressedJobDialogPresenter(context, {.grid = &contracts_, .reloadGrid = [this] { reloadGrid(); }}) {}

std::span<const ControlGroup> CustomerDialogPresenter::groups() const { return customerGroups; }

std::string CustomerDialogPresenter::title() const {
  return "Kunde " + text("txtKundennummer") + " " + text("txtBez1");
}

void CustomerDialogPresenter::fill() {
  unspoken_.clear();
  for (const ComparedLine& compared : comparedLines)
    if (isUnspoken(compared.column)) unspoken_.push_back(compared.control());
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
    const Findings found = CustomerProof(environment(), compare).prove(fields());
    answer_ = found.status();
    // A finding for which no field stands is not to be missed.
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
  const Findings found = CustomerProof(environment(), false).contracts(text("txtKundennummer"));
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
  for (const ComparedLine& compared : comparedLines)
    if (compared.control() == control) checkCustomer();
  checkAnswer();
}

void CustomerDialogPresenter::reportUnknownCustomer(const std::string& number) {
  at("txtKundennummer").description = "Neukunde";
  if (number.empty())
    report(false, Finding(Rule::CustomerNumberMissing));
  else
    report(false, Finding(Rule::CustomerIsNew, number));
}

void CustomerDialogPresenter::compareCustomer(const Adresse& stored) {
  at("txtKundennummer").description = stored.Bez1;
  for (const ComparedLine& compared : comparedLines) {
    const std::string& master = stored.*compared.line;
    // What the job does not speak of stays as the master has it.
    const std::string typed = text(compared.control());
    const bool kept = typed.empty() && std::ranges::find(unspoken_, compared.control()) != unspoken_.end();
    const bool equal = kept || typed == master;
    report(equal, Finding(compared.customer, typed, master));
    at(compared.control()).master = equal ? std::nullopt : std::optional(master);
  }
}

void CustomerDialogPresenter::clearComparison() {
  for (const ComparedLine& compared : comparedLines) {
    report(true, Finding(compared.customer));
    at(compared.control()).master.reset();
  }
}

/// Contracts name their customer by its number only: under the old one nobody would find them.
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
  // Null would keep what the master holds; a field that the clerk emptied empties it.
  for (ColumnChange& change : changed)
    if (change.content.isNull()) change.content = Value("");
  if (moveContracts_) editing().moveContracts(staged("Kundennummer"), text("txtKundennummer"));
  editing().saveCustomer(jobId(), changed, text("txtKundennummer"),
                         verdict() ? std::optional(answer_) : std::nullopt);
  storeAddresses(failure);
}

} // namespace qx
