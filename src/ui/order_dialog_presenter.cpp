#include "ui/order_dialog_presenter.h"

#include "model/date.h"
#include "rules/address_fields.h"
#include "settings/settings.h"
#include "ui/shared_controls.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>

namespace qx {
namespace {

namespace shared = shared_controls;

constexpr std::array orderCustomerControls{
    shared::customerNumber, shared::account,   shared::telephone, shared::fax,
    shared::salesRep,       shared::priceList, shared::release,
};

constexpr std::array ownAddressControls{
    ControlSpec{.name = "txtAnschrift",
                .caption = "Im Auftrag",
                .kind = ControlKind::Note,
                .picture = "imgAnschrift",
                .displayOnly = true},
    ControlSpec{
        .name = "txtStammanschrift", .caption = "Im Stamm", .kind = ControlKind::Note, .displayOnly = true},
};

constexpr std::array orderPaymentControls{
    shared::paymentMethod,
    shared::paymentTerms,
};

constexpr std::array orderIndividualControls{
    shared::individual1,
    shared::individual3,
    shared::individual4,
    ControlSpec{.name = "chkNeukunde",
                .caption = "Ne&ukunde",
                .kind = ControlKind::Check,
                .column = "Neukunde",
                .customerSpecific = true},
};

constexpr std::array orderGroups{ControlGroup{"Kunde", orderCustomerControls},
                                 ControlGroup{"Anschrift", ownAddressControls},
                                 ControlGroup{"Versand an", shared::deliveryControls},
                                 ControlGroup{"Rechnung an", shared::invoiceControls},
                                 ControlGroup{"Zahlung", orderPaymentControls},
                                 ControlGroup{"Bank", shared::bankControls},
                                 ControlGroup{"Bemerkung", shared::noteControls},
                                 ControlGroup{"Individuell", orderIndividualControls}};

/// A line of an address that the dialog compares with the customer master, and the rule that a difference
/// breaks.
struct ComparedLine {
  std::string Adresse::*line;
  Rule rule;
};

constexpr std::array comparedLines{
    ComparedLine{&Adresse::Bez1, Rule::OrderName1},   ComparedLine{&Adresse::Bez2, Rule::OrderName2},
    ComparedLine{&Adresse::Bez3, Rule::OrderName3},   ComparedLine{&Adresse::Strasse, Rule::OrderStreet},
    ComparedLine{&Adresse::PLZ, Rule::OrderPostCode}, ComparedLine{&Adresse::Ort, Rule::OrderCity},
    ComparedLine{&Adresse::Land, Rule::OrderCountry}};

/// The lines of an address, empty ones left out.
std::string linesOf(const Adresse& address) {
  std::string town = address.Land;
  for (const std::string& part : {address.PLZ, address.Ort})
    if (!part.empty()) town += (town.empty() ? "" : " ") + part;
  std::string text;
  for (const std::string& line : {address.Bez1, address.Bez2, address.Bez3, address.Strasse, town})
    if (!line.empty()) text += (text.empty() ? "" : "\r\n") + line;
  return text;
}

} // namespace

OrderDialogPresenter::OrderDialogPresenter(const DialogContext& context)
    : AddressedJobDialogPresenter(context, {.grid = &positions_, .checks = &positions_}),
      master_(context.environment, options_), positions_(context, master_, findings_) {}

std::span<const ControlGroup> OrderDialogPresenter::groups() const { return orderGroups; }

std::string OrderDialogPresenter::title() const {
  return "Auftrag von Kunde " + text("txtKundennummer") + " " + own_.Bez1 + " vom " + receivedOn_;
}

bool OrderDialogPresenter::changed() const {
  return AddressedJobDialogPresenter::changed() || positions_.changed();
}

void OrderDialogPresenter::fill() {
  own_ = addressOf(mainAddress, [this](ColumnName column) { return staged(column); });
  receivedOn_ = staged("Eingangsdatum");
  at("txtAnschrift").text = own_ == Adresse() ? "(wie im Stamm)" : linesOf(own_);
  // First, so that the positions are shown even if checks fail.
  loadPositions();
  // An existing text counts for a waiting order; in a parked one it is the result of an earlier check.
  checkHeader(stateOf(jobType()) == JobState::Waiting);
  checkRules();
  positions_.checkCount();
  // Checks a usual order at once; the rest of a long one follows while the dialog is open.
  checkMore(50);
}

void OrderDialogPresenter::loadPositions() {
  const Settings settings(environment());
  options_.customerSpecific = customerSpecific();
  checking("Lesen der Optionen", [&] { options_ = OrderOptions::read(settings, customerSpecific()); });
  PositionContext context;
  context.customer = text("txtKundennummer");
  context.date = parseGermanDate(receivedOn_);
  context.readOnly = isDone(jobType());
  context.ready = ReadyFlags::read(environment());
  ComboRows units{{"Langtext", "Mengeneinheit"}, {}};
  trying("Laden der Mengeneinheiten", [&] {
    for (auto& [code, name] : editing().units()) units.rows.push_back({std::move(name), std::move(code)});
  });
  positions_.load(jobId(), job().positions, std::move(units), std::move(context));
}

void OrderDialogPresenter::check(std::string_view control) {
  AddressedJobDialogPresenter::check(control);
  if (control == "txtKundennummer") positions_.setCustomer(text(control));
  checkRules();
}

void OrderDialogPresenter::checkRules() {
  for (const HeaderRule& rule : headerRules()) {
    if (rule.withControl) continue;
    checking(terms(rule.rules.front()).code, [&] {
      std::optional<Finding> found;
      try {
        found = rule.broken(master_, fields());
      } catch (const AmbiguousLimit& error) {
        environment().diagnostics.report({"credit limit", error.what(), jobId()});
        found = error.finding();
      }
      findings_.report(found, rule.rules, customerSpecific());
    });
  }
}

std::optional<Finding> OrderDialogPresenter::unknownCustomer() const {
  return headerRule(Rule::OrderCustomer).broken(master_, fields());
}

Findings OrderDialogPresenter::addressKeys() const {
  Findings found;
  for (const Rule rule : {Rule::OrderDelivery, Rule::OrderInvoice})
    if (auto unknown = headerRule(rule).broken(master_, fields())) found.add(std::move(*unknown));
  return found;
}

void OrderDialogPresenter::compareCustomer(const Adresse& stored) {
  at("txtStammanschrift").text = linesOf(stored);
  const bool divers = masterData().GetDiversKunde(text("txtKundennummer"));
  at("txtKundennummer").description =
      divers ? "(Divers) " + (own_.Bez1.empty() ? stored.Bez1 : own_.Bez1) : stored.Bez1 + ", " + stored.Ort;
  if (customerSpecific()) checkCustomerCodes();
  if (divers) return;
  for (const ComparedLine& line : comparedLines) {
    // An empty line of the order means the customer's.
    const std::string& given = own_.*line.line;
    const bool equal = given.empty() || given == stored.*line.line;
    if (!equal) mark("txtAnschrift", CheckStatus::Warning, "Die Anschrift weicht vom Stamm ab.");
    findings_.report(equal, Finding(line.rule, given, stored.*line.line));
  }
}

void OrderDialogPresenter::clearComparison() {
  for (const ComparedLine& line : comparedLines) findings_.clear(line.rule);
  mark("txtAnschrift", CheckStatus::Clean);
  at("txtStammanschrift").text.clear();
  findings_.clear(Rule::CustomersShippingMethod);
  findings_.clear(Rule::CustomersPaymentMethod);
}

/// Checks the customer's own shipping and payment method.
void OrderDialogPresenter::checkCustomerCodes() {
  const std::string customer = text("txtKundennummer");
  const auto checkOne = [&](Rule rule, std::string_view field, const std::string& method) {
    const bool fine = method.empty() || masterData().codeExists(field, method);
    findings_.report(fine, Finding(rule, method));
  };
  checkOne(Rule::CustomersShippingMethod, "Versandart", masterData().shippingMethodOfCustomer(customer));
  checkOne(Rule::CustomersPaymentMethod, "Zahlungsart", masterData().paymentMethodOfCustomer(customer));
}

void OrderDialogPresenter::store(std::string_view& failure) {
  std::vector<ColumnChange> all = changes();
  if (const auto found = verdict()) {
    const Value status(static_cast<std::int16_t>(*found));
    all.push_back({"Status", status});
    all.push_back({"ImportType", status});
  }
  editing().save(jobId(), all);
  if (positions_.changed()) editing().savePositions(jobId(), positions_.positions());
  storeAddresses(failure);
}

void OrderDialogPresenter::stored() {
  AddressedJobDialogPresenter::stored();
  positions_.markSaved();
}

} // namespace qx
