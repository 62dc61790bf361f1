#include "ui/addressed_job_dialog_presenter.h"

#include "engine/code_rules.h"
#include "engine/hints.h"
#include "rules/address_fields.h"
#include "rules/combo_lists.h"
#include "settings/settings.h"

#include <utility>

namespace qx {
namespace {

/// The rules that an unknown code breaks in a customer and in an order, and the list for its combo box; null
/// for a plain text field.
struct CodeControl {
  Rule customer;
  Rule order;
  bool (ComboLists::*list)(ComboTarget&, std::string_view) const;

  std::string_view control() const { return terms(customer).dialog.control; }
};

constexpr std::string_view bankControl = "txtBlz";
constexpr std::string_view accountControl = "txtHauptkonto";

constexpr std::array codeControls{
    CodeControl{Rule::CustomerSalesRep, Rule::OrderSalesRep, &ComboLists::FillComboVertreter},
    CodeControl{Rule::CustomerShippingMethod, Rule::OrderShippingMethod, &ComboLists::FillComboVersandart},
    CodeControl{Rule::CustomerPaymentMethod, Rule::OrderPaymentMethod, &ComboLists::FillComboZahlungsart},
    CodeControl{Rule::CustomerPaymentTerms, Rule::OrderPaymentTerms, &ComboLists::FillComboZahlungsbed},
    CodeControl{Rule::CustomerGroup, Rule::CustomerGroup, &ComboLists::FillComboKundengruppe},
    CodeControl{Rule::PriceList, Rule::PriceList, &ComboLists::FillComboPreisliste},
    CodeControl{Rule::Currency, Rule::Currency, &ComboLists::FillComboWährung},
    CodeControl{Rule::EntryCurrency, Rule::EntryCurrency, &ComboLists::FillComboWährung},
    CodeControl{Rule::CustomerBank, Rule::OrderBank, nullptr},
    CodeControl{Rule::CustomerAccount, Rule::OrderAccount, nullptr},
};

} // namespace

struct AddressedJobDialogPresenter::BlockSpec {
  std::string_view customer; ///< control of the customer number
  std::string_view number;   ///< control of the address number
  const AddressFields& fields;
  RulePair unknown;
  RulePair differs;
};

const std::array<AddressedJobDialogPresenter::BlockSpec, 2>& AddressedJobDialogPresenter::blocks() {
  static constexpr std::array<BlockSpec, 2> specs{
      BlockSpec{"txtVersandKdn",
                "txtVersandAdr",
                deliveryAddress,
                {Rule::CustomerDeliveryKey, Rule::OrderDelivery},
                {Rule::CustomerDelivery, Rule::OrderDeliveryLines}},
      BlockSpec{"txtRechnungKdnr",
                "txtRechnungAdr",
                invoiceAddress,
                {Rule::CustomerInvoiceKey, Rule::OrderInvoice},
                {Rule::CustomerInvoice, Rule::OrderInvoiceLines}}};
  return specs;
}

AddressedJobDialogPresenter::AddressedJobDialogPresenter(const DialogContext& context, JobDialogKind kind)
    : JobDialogPresenter(context, [&] {
        kind.cancelButton = "cmdClose";
        kind.addresses = this;
        return std::move(kind);
      }()) {}

AddressedJobDialogPresenter::~AddressedJobDialogPresenter() = default;

std::unique_ptr<Recordset> AddressedJobDialogPresenter::open(std::string_view jobId) {
  return editing().header(jobId);
}

void AddressedJobDialogPresenter::checkHeader(bool failureCounts) {
  readAddresses();
  fillCodes();
  checkBank();
  reportFailure(failureCounts);
  checkCustomer();
  checkAddresses();
  checkCode(accountControl);
  checkHints();
}

Rule AddressedJobDialogPresenter::ruleOf(RulePair rules) const {
  return kindOf(jobType()) == qxtjobkunden ? rules.customer : rules.order;
}

void AddressedJobDialogPresenter::checkHints() {
  if (isDone(jobType())) return;
  trying("Prüfen der Hinweise", [this] {
    findings_.setHints(jobHints(activeConnection(environment()), kindOf(jobType()), fields(),
                                Settings(environment())[option::homeCurrency]));
  });
}

void AddressedJobDialogPresenter::readAddresses() {
  for (std::size_t block = 0; block < blocks().size(); ++block)
    lines_[block] =
        addressOf(blocks()[block].fields.lines, [&](ColumnName column) { return staged(column); });
  stored_ = lines_;
}

void AddressedJobDialogPresenter::fillCodes() {
  for (const CodeControl& code : codeControls) {
    if (code.list == nullptr || !has(code.control())) continue;
    checking("Füllen von " + std::string(code.control()), [&] {
      ComboFiller filler(contentOf(code.control()));
      (ComboLists(environment()).*code.list)(filler, text(code.control()));
    });
    checkCode(code.control());
  }
}

void AddressedJobDialogPresenter::checkCode(std::string_view control) {
  for (const CodeControl& code : codeControls) {
    if (code.control() != control) continue;
    if (code.list != nullptr) select(control);
    const Rule rule = ruleOf({code.customer, code.order});
    checking(control, [&] { report(unknownCode(masterData(), fields(), rule), {rule}); });
  }
}

/// The bank code determines the bank's name. A job without a name uses it.
void AddressedJobDialogPresenter::checkBank() {
  checkCode(bankControl);
  checking("Prüfen der Bank", [this] {
    const std::string name = masterData().GetBankverbindung(text(bankControl));
    const std::string given = text("txtKreditinstitut");
    const bool differs = !name.empty() && !given.empty() && name != given;
    report(!differs, Finding(Rule::BankName, given, name));
    at("txtKreditinstitut").master = differs ? std::optional(name) : std::nullopt;
  });
}

void AddressedJobDialogPresenter::checkCustomer() {
  const std::string number = text("txtKundennummer");
  clearComparison();
  checking("Prüfen des Kunden", [&] {
    const std::optional<Finding> unknown = unknownCustomer();
    report(!unknown, unknown.value_or(Finding(Rule::OrderCustomer)));
    if (unknown)
      at("txtKundennummer").description = unknownCustomerName();
    else
      compareCustomer(storedAddresses().GetAdressDaten(number).value_or(Adresse()));
  });
}

void AddressedJobDialogPresenter::checkAddresses() {
  checking("Prüfen der Adressen", [this] {
    const Findings keys = addressKeys();
    for (std::size_t block = 0; block < blocks().size(); ++block)
      checkBlock(blocks()[block], lines_[block], keys);
  });
}

void AddressedJobDialogPresenter::checkBlock(const BlockSpec& spec, const Adresse& lines,
                                             const Findings& keys) {
  const Rule unknown = ruleOf(spec.unknown);
  report(keys, {unknown});
  const std::string customer = text(spec.customer);
  const std::string number = text(spec.number);
  std::optional<Adresse> stored;
  if (!keys.holds(unknown) && !(customer.empty() && number.empty()))
    stored = storedAddresses().GetAdressDaten(customer.empty() ? text("txtKundennummer") : customer, number);
  const bool differs = stored && lines != Adresse() && lines != *stored;
  report(!differs, Finding(ruleOf(spec.differs), oneLine(lines), oneLine(stored.value_or(Adresse()))));
}

void AddressedJobDialogPresenter::check(std::string_view control) {
  if (control == bankControl || control == "txtKreditinstitut")
    checkBank();
  else
    checkCode(control);
  const bool customer = control == "txtKundennummer";
  if (customer) checkCustomer();
  for (const BlockSpec& block : blocks())
    if (customer || control == block.customer || control == block.number) checkAddresses();
  checkHints();
}

std::string AddressedJobDialogPresenter::lookupContext(std::string_view control) const {
  for (const BlockSpec& block : blocks()) {
    if (control != block.number) continue;
    const std::string customer = text(block.customer);
    return customer.empty() ? text("txtKundennummer") : customer;
  }
  return {};
}

void AddressedJobDialogPresenter::takeLookup(std::string_view control,
                                             const std::vector<std::string>& chosen) {
  const auto put = [&](std::string_view name, std::string_view value) {
    if (const auto index = find(name)) type(*index, value);
  };
  bool addressKey = false;
  for (std::size_t i = 0; i < blocks().size(); ++i) {
    const BlockSpec& block = blocks()[i];
    if (control != block.number || chosen.size() < 2) continue;
    addressKey = true;
    if (!chosen[0].empty()) {
      put(block.customer, chosen[0]);
      put(block.number, chosen[1]);
    } else if (auto lines = storedAddresses().generalAddress(chosen[1])) {
      // An address that belongs to no customer has no key that a check would accept: copy its lines.
      put(block.customer, "");
      put(block.number, "");
      lines_[i] = std::move(*lines);
    }
  }
  if (!addressKey) put(control, chosen.front());
  if (control == bankControl) put("txtKreditinstitut", masterData().GetBankverbindung(chosen.front()));
  check(control);
}

AddressBlock AddressedJobDialogPresenter::blockOf(const BlockSpec& spec, const Adresse& lines) const {
  return {text(spec.customer), text(spec.number), lines};
}

std::unique_ptr<AddressDialogPresenter> AddressedJobDialogPresenter::addresses() {
  return std::make_unique<AddressDialogPresenter>(context(), text("txtKundennummer"),
                                                  blockOf(blocks()[0], lines_[0]),
                                                  blockOf(blocks()[1], lines_[1]), readOnly());
}

void AddressedJobDialogPresenter::takeAddresses(const AddressDialogPresenter& edited) {
  if (readOnly()) return;
  constexpr std::array parts{AddressDialogPresenter::Block::Delivery, AddressDialogPresenter::Block::Invoice};
  for (std::size_t block = 0; block < parts.size(); ++block) {
    const AddressBlock taken = edited.block(parts[block]);
    type(*find(blocks()[block].customer), taken.customer);
    type(*find(blocks()[block].number), taken.number);
    lines_[block] = taken.lines;
  }
  checkAddresses();
  checkHints();
}

Value AddressedJobDialogPresenter::current(ColumnName column) const {
  for (std::size_t block = 0; block < blocks().size(); ++block)
    for (const AddressLine& line : blocks()[block].fields.lines)
      if (line.column == column && lines_[block].*line.part != stored_[block].*line.part)
        return Value(lines_[block].*line.part);
  return JobDialogPresenter::current(column);
}

bool AddressedJobDialogPresenter::changed() const {
  return JobDialogPresenter::changed() || lines_ != stored_;
}

void AddressedJobDialogPresenter::stored() {
  markSaved();
  stored_ = lines_;
}

void AddressedJobDialogPresenter::storeAddresses(std::string_view& failure) {
  failure = "Fehler beim Update der Daten";
  std::vector<ColumnChange> changes;
  for (std::size_t block = 0; block < blocks().size(); ++block)
    for (const AddressLine& line : blocks()[block].fields.lines) {
      const std::string& text = lines_[block].*line.part;
      // An empty text clears the master's column; null would keep it.
      if (text != stored_[block].*line.part) changes.push_back({line.column, Value(text)});
    }
  editing().save(jobId(), changes);
}

} // namespace qx
