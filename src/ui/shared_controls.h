// The controls shared by the dialogs of customers and orders.
#pragma once

#include "platform/column_name.h"
#include "rules/customer_addresses.h"
#include "ui/control.h"

#include <array>
#include <string>
#include <string_view>

namespace qx::shared_controls {

inline constexpr ControlSpec customerNumber{"txtKundennummer", "&Kundennummer",   ControlKind::Text,
                                            "Kundennummer",    "imgKundennummer", "cmdKundennummer",
                                            "Kundenauskunft",  "lblKundennummer"};
inline constexpr ControlSpec account{"txtHauptkonto", "&Hauptkonto",   ControlKind::Text, "Hauptkonto",
                                     "imgHauptkonto", "cmdHauptkonto", "Kundenauskunft"};
inline constexpr ControlSpec telephone{.name = "txtTelefon", .caption = "&Telefon", .column = "Telefon"};
inline constexpr ControlSpec fax{.name = "txtFax", .caption = "Tele&fax", .column = "Telefax"};
inline constexpr ControlSpec salesRep{"tdbVertreter1", "&Vertreter", ControlKind::Combo, "Vertreter1",
                                      "imgVertreter1"};
inline constexpr ControlSpec priceList{"tdbPreisliste", "Preis&liste", ControlKind::Combo, "Preisliste",
                                       "imgPreisliste"};
inline constexpr ControlSpec release{"chkProcessWaring", "Trotz &Warnungen verarbeiten", ControlKind::Check,
                                     "ProcessWarning"};
inline constexpr ControlSpec paymentMethod{"tdbZahlungsart", "&Zahlungsart", ControlKind::Combo,
                                           "Zahlungsart", "imgZahlungsart"};
inline constexpr ControlSpec paymentTerms{"tdbZahlungsbed", "Zahlungs&bedingung", ControlKind::Combo,
                                          "ZahlungsbedSchl", "imgZahlungsbed"};
inline constexpr ControlSpec individual1{
    .name = "txtIndFild1", .caption = "Kennzeichen 1", .column = "IndFild1", .customerSpecific = true};
inline constexpr ControlSpec individual3{
    .name = "txtIndFild3", .caption = "Kennzeichen 3", .column = "IndFild3", .customerSpecific = true};
inline constexpr ControlSpec individual4{
    .name = "txtIndFild4", .caption = "Kennzeichen 4", .column = "IndFild4", .customerSpecific = true};

inline constexpr std::array deliveryControls{
    ControlSpec{"txtVersandKdn", "Kundennummer", ControlKind::Text, "VS_KdNr", "imgVersandKdn",
                "cmdVersandKdn", "Kundenauskunft"},
    ControlSpec{"txtVersandAdr", "Adressnummer", ControlKind::Text, "VS_AdrNr", "imgVersandAdr",
                "cmdVersandAdr", "Adressauskunft"},
    ControlSpec{"tdbVersandart", "Vers&andart", ControlKind::Combo, "Versandart", "imgVersandart"},
};

inline constexpr std::array invoiceControls{
    ControlSpec{"txtRechnungKdnr", "Kundennummer", ControlKind::Text, "RG_KdNr", "imgRechnungKdnr",
                "cmdRechnungKdnr", "Kundenauskunft"},
    ControlSpec{"txtRechnungAdr", "Adressnummer", ControlKind::Text, "RG_AdrNr", "imgRechnungAdr",
                "cmdRechnungAdr", "Adressauskunft"},
};

inline constexpr std::array bankControls{
    ControlSpec{.name = "txtKonto", .caption = "Konto", .column = "Konto"},
    ControlSpec{"txtBlz", "Bankleitzahl", ControlKind::Text, "BLZ", "imgBlz", "cmdBLZ",
                "Kreditinstitutauskunft"},
    ControlSpec{"txtKreditinstitut", "Kreditinstitut", ControlKind::Text, "Kreditinstitut",
                "imgKreditinstitut"},
};

inline constexpr std::array noteControls{
    ControlSpec{"txtHinweis", "Be&merkung", ControlKind::Note, "Bemerkung"}};

} // namespace qx::shared_controls
