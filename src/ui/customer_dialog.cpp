#include "ui/customer_dialog.h"

#include "ui/shared_controls.h"

#include <array>

namespace qx {
namespace {

constexpr std::array customerControls{
    ControlSpec{.name = "txtKundennummer",
                .caption = "&Kundennummer",
                .column = "Kundennummer",
                .picture = "imgKundennummer",
                .button = "cmdKundennummer",
                .lookup = "Kundenauskunft",
                .description = "lblKundennummer"},
    ControlSpec{.name = "txtSuchbegriff", .caption = "S&uchbegriff", .column = "Suchbegriff"},
    ControlSpec{.name = "txtHauptkonto",
                .caption = "&Hauptkonto",
                .column = "Hauptkonto",
                .picture = "imgHauptkonto",
                .button = "cmdHauptkonto",
                .lookup = "Kundenauskunft"},
    ControlSpec{.name = "tdbKundengruppe",
                .caption = "Kunden&gruppe",
                .kind = ControlKind::Combo,
                .column = "Kundengruppe",
                .picture = "imgKundengruppe"},
    ControlSpec{.name = "tdbVertreter1",
                .caption = "&Vertreter",
                .kind = ControlKind::Combo,
                .column = "Vertreter1",
                .picture = "imgVertreter1"},
    ControlSpec{.name = "tdbPreisliste",
                .caption = "Preis&liste",
                .kind = ControlKind::Combo,
                .column = "Preisliste",
                .picture = "imgPreisliste"},
    ControlSpec{.name = "chkProcessWaring",
                .caption = "Trotz &Warnungen verarbeiten",
                .kind = ControlKind::Check,
                .column = "ProcessWarning"},
};

constexpr std::array addressControls{
    ControlSpec{.name = "txtBez1", .caption = "Bezeichnung &1", .column = "Bez1", .picture = "imgBez1"},
    ControlSpec{.name = "txtBez2", .caption = "Bezeichnung &2", .column = "Bez2", .picture = "imgBez2"},
    ControlSpec{.name = "txtBez3", .caption = "Bezeichnung &3", .column = "Bez3", .picture = "imgBez3"},
    ControlSpec{.name = "txtStrasse", .caption = "&Straße", .column = "Strasse", .picture = "imgStrasse"},
    ControlSpec{.name = "txtPLZ", .caption = "&PLZ", .column = "PLZ", .picture = "imgPLZ"},
    ControlSpec{.name = "txtOrt", .caption = "&Ort", .column = "Ort", .picture = "imgOrt"},
    ControlSpec{.name = "txtLand", .caption = "Lan&d", .column = "Land", .picture = "imgLand"},
    ControlSpec{.name = "txtTelefon", .caption = "&Telefon", .column = "Telefon"},
    ControlSpec{.name = "txtFax", .caption = "Tele&fax", .column = "Telefax"},
};

constexpr std::array paymentControls{
    ControlSpec{.name = "tdbZahlungsart",
                .caption = "&Zahlungsart",
                .kind = ControlKind::Combo,
                .column = "Zahlungsart",
                .picture = "imgZahlungsart"},
    ControlSpec{.name = "tdbZahlungsbed",
                .caption = "Zahlungs&bedingung",
                .kind = ControlKind::Combo,
                .column = "ZahlungsbedSchl",
                .picture = "imgZahlungsbed"},
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
    ControlSpec{
        .name = "txtIndFild1", .caption = "Kennzeichen 1", .column = "IndFild1", .customerSpecific = true},
    ControlSpec{
        .name = "txtIndFild2", .caption = "Kennzeichen 2", .column = "IndFild2", .customerSpecific = true},
    ControlSpec{
        .name = "txtIndFild3", .caption = "Kennzeichen 3", .column = "IndFild3", .customerSpecific = true},
    ControlSpec{
        .name = "txtIndFild4", .caption = "Kennzeichen 4", .column = "IndFild4", .customerSpecific = true},
};

constexpr std::array customerGroups{ControlGroup{"Kunde", customerControls},
                                    ControlGroup{"Adresse", addressControls},
                                    ControlGroup{"Versand an", shared_controls::deliveryControls},
                                    ControlGroup{"Rechnung an", shared_controls::invoiceControls},
                                    ControlGroup{"Zahlung", paymentControls},
                                    ControlGroup{"Bank", shared_controls::bankControls},
                                    ControlGroup{"Bemerkung", shared_controls::noteControls},
                                    ControlGroup{"Individuell", individualControls}};

} // namespace

std::span<const ControlGroup> CustomerDialog::groups() const { return customerGroups; }

std::string CustomerDialog::title() const {
  return "Kunde " + text("txtKundennummer") + " " + text("txtBez1");
}

void CustomerDialog::fill(Recordset& job) {
  readAddresses(job);
  fillCodes();
  checkBank();
  reportFailure(job);
  checkCustomer();
  checkAddresses();
  checkAccount();
  reloadGrid();
}

void CustomerDialog::reloadGrid() { contracts_.load(editing(), engine(), text("txtKundennummer")); }

void CustomerDialog::check(std::string_view control) {
  AddressedJobDialog::check(control);
  if (control == "txtKundennummer") reloadGrid();
  for (const ComparedLine& compared : comparedLines)
    if (compared.control == control) checkCustomer();
}

void CustomerDialog::reportUnknownCustomer(const std::string& number) {
  at("txtKundennummer").description = "Neukunde";
  if (number.empty())
    report("KN", "txtKundennummer", CheckStatus::Error, "Die Kundennummer fehlt.");
  else
    report("KN", "txtKundennummer", CheckStatus::Warning,
           "Die Kundennummer: " + number + " wurde nicht angelegt. Neukunde!");
}

void CustomerDialog::compareCustomer(const Adresse& stored) {
  at("txtKundennummer").description = stored.Bez1;
  for (const ComparedLine& compared : comparedLines) {
    const std::string& master = stored.*compared.line;
    const bool equal = text(compared.control) == master;
    report(compared.code, compared.control, equal ? CheckStatus::Clean : CheckStatus::Warning,
           std::string(compared.before) + master);
    at(compared.control).master = equal ? std::nullopt : std::optional(master);
  }
}

void CustomerDialog::clearComparison() {
  for (const ComparedLine& compared : comparedLines) {
    report(compared.code, compared.control, CheckStatus::Clean);
    at(compared.control).master.reset();
  }
}

void CustomerDialog::store() {
  editing().saveCustomer(readJob(), changes(), text("txtKundennummer"), findings_.status());
}

} // namespace qx
