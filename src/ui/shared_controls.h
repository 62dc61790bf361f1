// The controls that the dialogs of customers and orders have in common.
#pragma once

#include "platform/column_name.h"
#include "rules/customer_addresses.h"
#include "ui/control.h"

#include <array>
#include <string>
#include <string_view>

namespace qx::shared_controls {

inline constexpr ControlSpec customerNumber{.name = "txtKundennummer",
                                            .caption = "&Kundennummer",
                                            .column = "Kundennummer",
                                            .picture = "imgKundennummer",
                                            .button = "cmdKundennummer",
                                            .lookup = "Kundenauskunft",
                                            .description = "lblKundennummer"};
inline constexpr ControlSpec account{.name = "txtHauptkonto",
                                     .caption = "&Hauptkonto",
                                     .column = "Hauptkonto",
                                     .picture = "imgHauptkonto",
                                     .button = "cmdHauptkonto",
                                     .lookup = "Kundenauskunft"};
inline constexpr ControlSpec telephone{.name = "txtTelefon", .caption = "&Telefon", .column = "Telefon"};
inline constexpr ControlSpec fax{.name = "txtFax", .caption = "Tele&fax", .column = "Telefax"};
inline constexpr ControlSpec salesRep{.name = "tdbVertreter1",
                                      .caption = "&Vertreter",
                                      .kind = ControlKind::Combo,
                                      .column = "Vertreter1",
                                      .picture = "imgVertreter1"};
inline constexpr ControlSpec priceList{.name = "tdbPreisliste",
                                       .caption = "Preis&liste",
                                       .kind = ControlKind::Combo,
                                       .column = "Preisliste",
                                       .picture = "imgPreisliste"};
inline constexpr ControlSpec release{.name = "chkProcessWaring",
                                     .caption = "Trotz &Warnungen verarbeiten",
                                     .kind = ControlKind::Check,
                                     .column = "ProcessWarning"};
inline constexpr ControlSpec paymentMethod{.name = "tdbZahlungsart",
                                           .caption = "&Zahlungsart",
                                           .kind = ControlKind::Combo,
                                           .column = "Zahlungsart",
                                           .picture = "imgZahlungsart"};
inline constexpr ControlSpec paymentTerms{.name = "tdbZahlungsbed",
                                          .caption = "Zahlungs&bedingung",
                                          .kind = ControlKind::Combo,
                                          .column = "ZahlungsbedSchl",
                                          .picture = "imgZahlungsbed"};
inline constexpr ControlSpec individual1{
    .name = "txtIndFild1", .caption = "Kennzeichen 1", .column = "IndFild1", .customerSpecific = true};
inline constexpr ControlSpec individual3{
    .name = "txtIndFild3", .caption = "Kennzeichen 3", .column = "IndFild3", .customerSpecific = true};
inline constexpr ControlSpec individual4{
    .name = "txtIndFild4", .caption = "Kennzeichen 4", .column = "IndFild4", .customerSpecific = true};

inline constexpr std::array deliveryControls{
    ControlSpec{.name = "txtVersandKdn",
                .caption = "Kundennummer",
                .column = "VS_KdNr",
                .picture = "imgVersandKdn",
                .button = "cmdVersandKdn",
                .lookup = "Kundenauskunft"},
    ControlSpec{.name = "txtVersandAdr",
                .caption = "Adressnummer",
                .column = "VS_AdrNr",
                .picture = "imgVersandAdr",
                .button = "cmdVersandAdr",
                .lookup = "Adressauskunft"},
    ControlSpec{.name = "tdbVersandart",
                .caption = "Vers&andart",
                .kind = ControlKind::Combo,
                .column = "Versandart",
                .picture = "imgVersandart"},
};

inline constexpr std::array invoiceControls{
    ControlSpec{.name = "txtRechnungKdnr",
                .caption = "Kundennummer",
                .column = "RG_KdNr",
                .picture = "imgRechnungKdnr",
                .button = "cmdRechnungKdnr",
                .lookup = "Kundenauskunft"},
    ControlSpec{.name = "txtRechnungAdr",
                .caption = "Adressnummer",
                .column = "RG_AdrNr",
                .picture = "imgRechnungAdr",
                .button = "cmdRechnungAdr",
                .lookup = "Adressauskunft"},
};

inline constexpr std::array bankControls{
    ControlSpec{.name = "txtKonto", .caption = "Konto", .column = "Konto"},
    ControlSpec{.name = "txtBlz",
                .caption = "Bankleitzahl",
                .column = "BLZ",
                .picture = "imgBlz",
                .button = "cmdBLZ",
                .lookup = "Kreditinstitutauskunft"},
    ControlSpec{.name = "txtKreditinstitut",
                .caption = "Kreditinstitut",
                .column = "Kreditinstitut",
                .picture = "imgKreditinstitut"},
};

inline constexpr std::array noteControls{ControlSpec{
    .name = "txtHinweis", .caption = "Be&merkung", .kind = ControlKind::Note, .column = "Bemerkung"}};

} // namespace qx::shared_controls
