#include "ui/address_dialog_presenter.h"

#include "model/text.h"
#include "platform/failure.h"
#include "rules/address_fields.h"
#include "ui/lookup_bridge.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace qx {
namespace {

constexpr std::string_view customerLookup = "Kundenauskunft";
constexpr std::string_view addressLookup = "Adressauskunft";

constexpr std::array deliveryControls{
    ControlSpec{"txtVS_KdNr", "&Kundennummer", ControlKind::Text, "", "imgVS_KdNr", "cmdVS_KdNr",
                customerLookup},
    ControlSpec{"txtVS_AdrNr", "&Adressnummer", ControlKind::Text, "", "imgVS_AdrNr", "cmdVS_AdrNr",
                addressLookup},
    ControlSpec{.name = "txtVS_Bez1", .caption = "Bezeichnung &1", .picture = "imgVS_Bez1"},
    ControlSpec{.name = "txtVS_Bez2", .caption = "Bezeichnung &2", .picture = "imgVS_Bez2"},
    ControlSpec{.name = "txtVS_Bez3", .caption = "Bezeichnung &3", .picture = "imgVS_Bez3"},
    ControlSpec{.name = "txtVS_Strasse", .caption = "&Straße", .picture = "imgVS_Strasse"},
    ControlSpec{.name = "txtVS_PLZ", .caption = "&PLZ", .picture = "imgVS_PLZ"},
    ControlSpec{.name = "txtVS_Ort", .caption = "&Ort", .picture = "imgVS_Ort"},
    ControlSpec{.name = "txtVS_Land", .caption = "&Land", .picture = "imgVS_Land"},
};

constexpr std::array invoiceControls{
    ControlSpec{"txtRG_KdNr", "K&undennummer", ControlKind::Text, "", "imgRG_KdNr", "cmdRG_KdNr",
                customerLookup},
    ControlSpec{"txtRG_AdrNr", "A&dressnummer", ControlKind::Text, "", "imgRG_AdrNr", "cmdRG_AdrNr",
                addressLookup},
    ControlSpec{.name = "txtRG_Bez1", .caption = "Bezeichnung 1", .picture = "imgRG_Bez1"},
    ControlSpec{.name = "txtRG_Bez2", .caption = "Bezeichnung 2", .picture = "imgRG_Bez2"},
    ControlSpec{.name = "txtRG_Bez3", .caption = "Bezeichnung 3", .picture = "imgRG_Bez3"},
    ControlSpec{.name = "txtRG_Strasse", .caption = "Straß&e", .picture = "imgRG_Strasse"},
    ControlSpec{.name = "txtRG_PLZ", .caption = "PL&Z", .picture = "imgRG_PLZ"},
    ControlSpec{.name = "txtRG_Ort", .caption = "Or&t", .picture = "imgRG_Ort"},
    ControlSpec{.name = "txtRG_Land", .caption = "La&nd", .picture = "imgRG_Land"},
};

constexpr std::array addressGroups{ControlGroup{"Versand an", deliveryControls},
                                   ControlGroup{"Rechnung an", invoiceControls}};

/// Each block consists of the key and then the lines, in this order.
constexpr std::size_t keyControls = 2;
constexpr const AddressLines& addressLines = deliveryAddress.lines;

std::string described(const Adresse& address) {
  const std::string text = oneLine(address);
  return text.empty() ? "(ohne Angaben)" : text;
}

std::string differenceTo(const std::string& stored) {
  return stored.empty() ? "In der Stammadresse ist diese Zeile leer."
                        : "In der Stammadresse steht: " + stored;
}

} // namespace

struct AddressDialogPresenter::BlockSpec {
  std::span<const ControlSpec> controls;

  std::string_view customer() const { return controls[0].name; }
  std::string_view number() const { return controls[1].name; }
  std::string_view line(std::size_t i) const { return controls[keyControls + i].name; }
  bool owns(std::string_view control) const {
    return std::ranges::any_of(controls, [&](const ControlSpec& spec) { return spec.name == control; });
  }
};

const std::array<AddressDialogPresenter::BlockSpec, 2>& AddressDialogPresenter::specsOfBlocks() {
  static const std::array<BlockSpec, 2> specs{BlockSpec{deliveryControls}, BlockSpec{invoiceControls}};
  return specs;
}

AddressDialogPresenter::AddressDialogPresenter(DialogContext context, std::string ownCustomer,
                                               AddressBlock delivery, AddressBlock invoice, bool readOnly)
    : context_(std::move(context)), ownCustomer_(std::move(ownCustomer)) {
  build(false);
  const std::array given{&delivery, &invoice};
  for (const Block block : allBlocks) {
    const BlockSpec& spec = specsOfBlocks()[slot(block)];
    const AddressBlock& content = *given[slot(block)];
    at(spec.customer()).text = content.customer;
    at(spec.number()).text = content.number;
    for (std::size_t i = 0; i < addressLines.size(); ++i)
      at(spec.line(i)).text = content.lines.*addressLines[i].part;
    readStored(block);
  }
  markSaved();
  setReadOnly(readOnly);
}

std::span<const ControlGroup> AddressDialogPresenter::groups() const { return addressGroups; }

void AddressDialogPresenter::leave(std::size_t index) {
  const std::string_view control = specs()[index]->name;
  for (const Block block : allBlocks) {
    const BlockSpec& spec = specsOfBlocks()[slot(block)];
    if (!spec.owns(control)) continue;
    if (control == spec.customer() || control == spec.number())
      readStored(block);
    else
      compare(block);
  }
}

bool AddressDialogPresenter::lookUp(std::size_t index) {
  const ControlSpec& control = *specs()[index];
  if (readOnly() || control.lookup.empty()) return false;
  for (const Block block : allBlocks) {
    const BlockSpec& spec = specsOfBlocks()[slot(block)];
    if (!spec.owns(control.name)) continue;
    const bool address = control.name == spec.number();
    const std::vector<std::string> chosen =
        context_.lookups.open(control.lookup, address ? owner(block) : std::string());
    if (chosen.size() < (address ? 2U : 1U)) return false;
    if (address && chosen[0].empty()) return takeGeneral(block, chosen[1]);
    type(*find(spec.customer()), chosen[0]);
    if (address) type(index, chosen[1]);
    readStored(block);
    return true;
  }
  return false;
}

/// An address that belongs to no customer has no key that a check would accept, so the job copies its lines.
bool AddressDialogPresenter::takeGeneral(Block block, std::string_view number) {
  const BlockSpec& spec = specsOfBlocks()[slot(block)];
  std::optional<Adresse> lines;
  trapped(
      context_.environment.diagnostics, {"general address of a job", number},
      [&] { lines = CustomerAddresses(context_.environment).generalAddress(number); },
      [&](const std::exception& error) {
        notice_ = "Die Adresse kann nicht gelesen werden: " + germanCause(error);
      });
  if (!lines) return false;
  type(*find(spec.customer()), "");
  type(*find(spec.number()), "");
  readStored(block);
  setLines(block, *lines);
  return true;
}

bool AddressDialogPresenter::takeStored(Block block) {
  if (readOnly() || !hasStored(block)) return false;
  setLines(block, *stored_[slot(block)]);
  return true;
}

void AddressDialogPresenter::clear(Block block) {
  if (!readOnly()) setLines(block, {});
}

void AddressDialogPresenter::setLines(Block block, const Adresse& lines) {
  const BlockSpec& spec = specsOfBlocks()[slot(block)];
  for (std::size_t i = 0; i < addressLines.size(); ++i)
    type(*find(spec.line(i)), lines.*addressLines[i].part);
  compare(block);
}

std::string AddressDialogPresenter::owner(Block which) const {
  const std::string customer = block(which).customer;
  return customer.empty() ? ownCustomer_ : customer;
}

bool AddressDialogPresenter::isOwn(Block which) const {
  return block(which).number.empty() && equalCodes(owner(which), ownCustomer_);
}

void AddressDialogPresenter::readStored(Block which) {
  const BlockSpec& spec = specsOfBlocks()[slot(which)];
  const AddressBlock edited = block(which);
  const std::string customer = owner(which);
  stored_[slot(which)].reset();
  notice_.clear();
  mark(spec.customer(), CheckStatus::Clean);
  mark(spec.number(), CheckStatus::Clean);
  const auto read = [&] {
    const CustomerAddresses addresses(context_.environment);
    stored_[slot(which)] = addresses.GetAdressDaten(customer, edited.number);
    const bool unknown = !stored_[slot(which)] && !isOwn(which);
    if (unknown && !edited.number.empty() && addresses.KundeAngelegt(customer))
      mark(spec.number(), CheckStatus::Error,
           "Die Adresse " + edited.number + " des Kunden " + customer + " ist nicht angelegt.");
    else if (unknown)
      mark(spec.customer(), CheckStatus::Error, "Der Kunde " + customer + " ist nicht angelegt.");
  };
  trapped(context_.environment.diagnostics, {"stored address of a job", customer}, read,
          [&](const std::exception& error) {
            notice_ = "Die Stammadresse kann nicht gelesen werden: " + germanCause(error);
          });
  compare(which);
}

void AddressDialogPresenter::compare(Block which) {
  const BlockSpec& spec = specsOfBlocks()[slot(which)];
  const std::optional<Adresse>& stored = stored_[slot(which)];
  const Adresse lines = block(which).lines;
  const bool compared = stored && lines != Adresse();
  for (std::size_t i = 0; i < addressLines.size(); ++i) {
    const bool differs = compared && lines.*addressLines[i].part != (*stored).*addressLines[i].part;
    at(spec.line(i)).master = differs ? std::optional((*stored).*addressLines[i].part) : std::nullopt;
    mark(spec.line(i), differs ? CheckStatus::Warning : CheckStatus::Clean,
         differs ? differenceTo((*stored).*addressLines[i].part) : std::string());
  }
}

std::string AddressDialogPresenter::standing(Block which) const {
  const AddressBlock edited = block(which);
  const std::optional<Adresse>& stored = stored_[slot(which)];
  const bool empty = edited.lines == Adresse();
  if (stored) {
    if (empty) return "Es gilt die Stammadresse: " + described(*stored);
    if (edited.lines == *stored) return "Gleich der Stammadresse.";
    return "Weicht von der Stammadresse ab: " + described(*stored);
  }
  if (isOwn(which))
    return empty ? "Es gilt die Anschrift des Vorgangs; der Kunde ist noch nicht angelegt."
                 : "Eigene Anschrift; der Kunde ist noch nicht angelegt.";
  return empty ? "Keine Anschrift: Es gibt zu diesen Nummern keine Stammadresse."
               : "Eigene Anschrift; es gibt zu diesen Nummern keine Stammadresse.";
}

AddressBlock AddressDialogPresenter::block(Block which) const {
  const BlockSpec& spec = specsOfBlocks()[slot(which)];
  AddressBlock block;
  block.customer = trimBlanks(text(spec.customer()));
  block.number = trimBlanks(text(spec.number()));
  for (std::size_t i = 0; i < addressLines.size(); ++i)
    block.lines.*addressLines[i].part = text(spec.line(i));
  return block;
}

std::string oneLine(const Adresse& address) {
  std::string text;
  for (const AddressLine& line : deliveryAddress.lines) {
    const std::string& part = address.*line.part;
    if (!part.empty()) text += (text.empty() ? "" : ", ") + part;
  }
  return text;
}

} // namespace qx
