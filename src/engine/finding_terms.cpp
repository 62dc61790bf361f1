#include "engine/finding_terms.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

constexpr std::string_view codeMissing = "{field}: '{value}' ist nicht angelegt.";
constexpr std::string_view fieldDiffers = "{field} ist nicht identisch: '{value}' / '{stored}'";
constexpr std::string_view comparedWithOption = "Der geöffnete Vorgang vergleicht immer, die Verarbeitung "
                                                "nur mit der Option Adressen mit dem Kundenstamm "
                                                "vergleichen.";
constexpr std::string_view ownModeOnly = "Nur in Installationen mit kundenspezifischen Werten.";

// Shared by customers and orders. The odd spellings here and below are deliberate: clerks know them.
constexpr std::string_view grid = "TDBGrid1";
constexpr DialogTerms salesRepTerms{"VT", "tdbVertreter1", "Vertreter: {value} wurde noch nicht angelegt."};
constexpr DialogTerms shippingTerms{"VSA", "tdbVersandart", "Versandart: {value} wurde noch nicht angelegt."};
constexpr DialogTerms paymentTerms{"ZA", "tdbZahlungsart", "Zahlungsart: {value} wurde noch nicht angelegt."};
constexpr DialogTerms termsTerms{"ZB", "tdbZahlungsbed",
                                 "Zahlungsbedingung: {value} wurde noch nicht angelegt."};
constexpr DialogTerms bankTerms{"BLZ", "txtBlz", "Bankleitzahl: {value} wurde noch nicht angelegt."};
constexpr DialogTerms accountTerms{"HK", "txtHauptkonto", "Hauptkonto {value} wurde nicht angelegt"};
constexpr DialogTerms deliveryTerms{"VS", "txtVersandKdn", "Versand an wurde nicht angelegt"};
constexpr DialogTerms invoiceTerms{"RG", "txtRechnungKdnr", "Rechnung an wurde nicht angelgt"};
constexpr DialogTerms quantityTerms{"ME", "tdbAnzahl", "Die Menge muss mindestens 1 betragen."};

constexpr RuleTerms row(CheckStatus severity, Rule rule, std::string_view code, std::string_view run,
                        std::string_view field, DialogTerms dialog, std::string_view remedy) {
  return {rule, code, severity, run, field, dialog, remedy};
}
constexpr RuleTerms warning(Rule rule, std::string_view code, std::string_view run, std::string_view field,
                            DialogTerms dialog, std::string_view remedy) {
  return row(CheckStatus::Warning, rule, code, run, field, dialog, remedy);
}
constexpr RuleTerms warning(Rule rule, std::string_view code, std::string_view run, std::string_view field,
                            std::string_view remedy) {
  return row(CheckStatus::Warning, rule, code, run, field, {}, remedy);
}
constexpr RuleTerms error(Rule rule, std::string_view code, std::string_view run, std::string_view field,
                          DialogTerms dialog, std::string_view remedy) {
  return row(CheckStatus::Error, rule, code, run, field, dialog, remedy);
}
constexpr RuleTerms error(Rule rule, std::string_view code, std::string_view run, std::string_view field,
                          std::string_view remedy) {
  return row(CheckStatus::Error, rule, code, run, field, {}, remedy);
}
constexpr RuleTerms hint(Rule rule, std::string_view code, std::string_view run, std::string_view field,
                         DialogTerms dialog, std::string_view remedy) {
  return row(CheckStatus::Clean, rule, code, run, field, dialog, remedy);
}
/// A warning of the dialog only, which does not hold up the job.
constexpr RuleTerms notice(Rule rule, std::string_view code, std::string_view field, DialogTerms dialog,
                           std::string_view remedy) {
  RuleTerms terms = row(CheckStatus::Warning, rule, code, {}, field, dialog, remedy);
  terms.counts = false;
  return terms;
}
/// A line of the address that differs from the customer's.
constexpr RuleTerms customerLine(Rule rule, std::string_view code, std::string_view field,
                                 DialogTerms dialog) {
  return warning(rule, code, fieldDiffers, field, dialog,
                 "Stammwert übernehmen, oder die Abweichung gelten lassen.")
      .noted(comparedWithOption);
}
constexpr RuleTerms orderLine(Rule rule, std::string_view code, std::string_view field, DialogTerms dialog) {
  return notice(rule, code, field, dialog,
                "Die Kundennummer prüfen. Die Anschrift selbst wird hier nicht geändert.");
}

// In the order of `Rule`: code, text of the run, field, terms of the dialog, what to do.
constexpr std::array ruleTerms{
    // Jobs of any kind.
    warning(Rule::EarlierReasons, "job.reasons.standing", "", "Fehlertext",
            DialogTerms{"EP", "chkProcessWaring", "Fehler beim verarbeiten: {value}"},
            "Die genannte Ursache beheben. Der Text bleibt bis zur nächsten Verarbeitung.")
        .noted("Bei einem wartenden Auftrag ist er eine Warnung der Prüfung, sonst zeigt ihn nur der "
               "geöffnete Vorgang."),
    error(Rule::CheckFailed, "job.check.failed", "Der Vorgang konnte nicht geprüft werden: {value}", "",
          "Die genannte Ursache beheben und noch einmal prüfen."),
    error(Rule::ProcessingFailed, "job.processing.failed", "{value}", "",
          "Die genannte Ursache beheben und den Vorgang freigeben. Bleibt es dabei, die Betreuung fragen."),
    hint(Rule::TaxIdMissing, "job.tax.id_missing",
         "Der Kunde ist steuerfrei (MwSt_KZ '{value}'), hat aber keine UstIdentNr.", "UstIdentNr",
         DialogTerms{"HI", "txtKundennummer"},
         "Umsatzsteuernummer eintragen oder das Steuermerkmal berichtigen."),
    hint(
        Rule::GrossPricesAbroad, "job.tax.gross_prices",
        "Bruttopreise (Preistyp 1) bei einem Kunden, der nicht im Inland besteuert wird (MwSt_KZ '{value}').",
        "Preistyp", DialogTerms{"HI", "txtKundennummer"}, "Eine Nettopreisliste zuordnen."),
    // Check of a customer.
    error(Rule::CustomerNumberMissing, "customer.number.missing", "Die Kundennummer fehlt.", "Kundennummer",
          DialogTerms{"KN", "txtKundennummer"}, "Kundennummer eintragen oder mit F4 suchen."),
    notice(Rule::CustomerIsNew, "customer.number.new", "Kundennummer",
           DialogTerms{"KN", "txtKundennummer", "Die Kundennummer: {value} wurde nicht angelegt. Neukunde!"},
           "Nichts, wenn der Kunde neu ist. Sonst die richtige Nummer suchen."),
    warning(Rule::CustomerGroup, "customer.group.unknown", codeMissing, "Kundengruppe",
            DialogTerms{"KG", "tdbKundengruppe", "Kundengruppe: {value} wurde noch nicht angelegt."},
            "Aus der Liste wählen, oder in den Optionen das Anlegen erlauben."),
    warning(Rule::CustomerSalesRep, "customer.sales_rep.unknown", codeMissing, "Vertreter1", salesRepTerms,
            "Aus der Liste wählen, oder in den Optionen das Anlegen erlauben."),
    warning(Rule::CustomerShippingMethod, "customer.shipping_method.unknown", codeMissing, "Versandart",
            shippingTerms, "Aus der Liste wählen."),
    warning(Rule::CustomerPaymentMethod, "customer.payment_method.unknown", codeMissing, "Zahlungsart",
            paymentTerms, "Aus der Liste wählen, oder in den Optionen das Anlegen erlauben."),
    warning(Rule::CustomerPaymentTerms, "customer.payment_terms.unknown", codeMissing, "ZahlungsbedSchl",
            termsTerms, "Aus der Liste wählen."),
    warning(Rule::CustomerBank, "customer.bank.unknown", codeMissing, "Bankleitzahl", bankTerms,
            "Mit F4 suchen, oder in den Optionen das Anlegen erlauben."),
    customerLine(Rule::CustomerName1, "customer.name1.differs", "Bez1",
                 {"BZ1", "txtBez1", "Bezeichnung 1 ist nicht identisch: {stored}"}),
    customerLine(Rule::CustomerName2, "customer.name2.differs", "Bez2",
                 {"BZ2", "txtBez2", "Bezeichnung 2 ist nicht identisch: {stored}"}),
    customerLine(Rule::CustomerName3, "customer.name3.differs", "Bez3",
                 {"BZ3", "txtBez3", "Bezeichnung 3 ist nicht identisch: {stored}"}),
    customerLine(Rule::CustomerStreet, "customer.street.differs", "Strasse",
                 {"STR", "txtStrasse", "Straße ist nicht identisch: {stored}"}),
    customerLine(Rule::CustomerCountry, "customer.country.differs", "Land",
                 {"LD", "txtLand", "Land ist nicht identisch: {stored}"}),
    customerLine(Rule::CustomerPostCode, "customer.post_code.differs", "PLZ",
                 {"PLZ", "txtPLZ", "Postleitzahl ist nicht identisch: {stored}"}),
    customerLine(Rule::CustomerCity, "customer.city.differs", "Ort",
                 {"ORT", "txtOrt", "Ort ist nicht identisch: {stored}"}),
    warning(Rule::CustomerDelivery, "customer.delivery.differs", fieldDiffers, "VS_AdrNr",
            DialogTerms{"VA", "txtVersandAdr", "Versandadresse ist nicht identisch: {stored}"},
            "Unter Adressen… mit dem Stamm vergleichen.")
        .noted(comparedWithOption),
    warning(Rule::CustomerInvoice, "customer.invoice.differs", fieldDiffers, "RG_AdrNr",
            DialogTerms{"RA", "txtRechnungAdr", "Rechnungsadresse ist nicht identisch: {stored}"},
            "Unter Adressen… mit dem Stamm vergleichen.")
        .noted(comparedWithOption),
    warning(Rule::CustomerAccount, "customer.account.unknown", "Hauptkonto ist nicht angelegt", "Hauptkonto",
            accountTerms, "Mit F4 suchen oder leeren."),
    error(Rule::CustomerDeliveryKey, "customer.delivery.unknown", "VS_KdNr ist nicht angelegt", "VS_KdNr",
          deliveryTerms, "Die Nummern unter Versand an berichtigen."),
    error(Rule::CustomerInvoiceKey, "customer.invoice.unknown", "RG_KdNr ist nicht angelegt", "RG_KdNr",
          invoiceTerms, "Die Nummern unter Rechnung an berichtigen."),
    warning(Rule::CustomerContractWarnings, "customer.contracts.warning",
            "Im Kundenvertrag wurden ''Warnungen'' festgestellt.", "", DialogTerms{"KVW", grid},
            "Den Vertrag in der Liste öffnen und berichtigen."),
    error(Rule::CustomerContractErrors, "customer.contracts.error",
          "Im Kundenvertrag wurden ''Fehler'' festgestellt.", "", DialogTerms{"KVF", grid},
          "Den Vertrag in der Liste öffnen und berichtigen."),
    // Only in the dialogs of customers and orders.
    notice(Rule::PriceList, "job.price_list.unknown", "Preisliste",
           DialogTerms{"PL", "tdbPreisliste", "Preisliste: {value} wurde noch nicht angelegt."},
           "Aus der Liste wählen."),
    notice(Rule::Currency, "customer.currency.unlisted", "Währung",
           DialogTerms{"WÄ", "tdbWährung", "Währung: {value} wurde noch nicht angelegt."},
           "Aus der Liste wählen.")
        .noted("Die Verarbeitung schreibt einen solchen Kunden nicht: customer.currency.refused."),
    notice(Rule::EntryCurrency, "customer.entry_currency.unlisted", "WährungEingabe",
           DialogTerms{"WÄE", "tdbWährungEG", "Währung: {value} wurde noch nicht angelegt."},
           "Aus der Liste wählen."),
    notice(Rule::BankName, "job.bank_name.differs", "Kreditinstitut",
           DialogTerms{"BV", "txtKreditinstitut", "Bankverbindung sind nicht identisch: {stored}"},
           "Das Kreditinstitut des Stamms übernehmen."),
    warning(Rule::OtherFindings, "customer.check.others", "", "",
            DialogTerms{"PB", "txtKundennummer", "{value}"}, "Das genannte Feld prüfen.")
        .noted("Nur im geöffneten Vorgang: was die Prüfung sonst noch findet."),
    // Refusal of a customer.
    error(Rule::CustomerGroupRefused, "customer.group.refused",
          "Die Kundengruppe: '{value}' wurde noch nicht angelegt.\r\nUm automatisch die Kundengruppe "
          "anzulegen, stellen Sie dies bitte in den Optionen ein.",
          "Kundengruppe", "Den Schlüssel berichtigen, oder in den Optionen das Anlegen erlauben."),
    error(Rule::CustomerSalesRepRefused, "customer.sales_rep.refused",
          "Der Vertreter: '{value}' wurde noch nicht angelegt.\r\nUm automatisch den Vertreter anzulegen, "
          "stellen Sie dies bitte in den Optionen ein.",
          "Vertreter1", "Den Schlüssel berichtigen, oder in den Optionen das Anlegen erlauben."),
    error(Rule::CustomerPaymentMethodRefused, "customer.payment_method.refused",
          "Die Zahlungsart: '{value}' wurde noch nicht angelegt.\r\nUm automatisch die Zahlungsart "
          "anzulegen, stellen Sie dies bitte in den Optionen ein.",
          "Zahlungsart", "Den Schlüssel berichtigen, oder in den Optionen das Anlegen erlauben."),
    error(Rule::CustomerBankRefused, "customer.bank.refused",
          "Die Bankleitzahl: '{value}' wurde noch nicht angelegt.\r\nUm automatisch die Bankleitzahl "
          "anzulegen, stellen Sie dies bitte in den Optionen ein.",
          "Bankleitzahl", "Den Schlüssel berichtigen, oder in den Optionen das Anlegen erlauben."),
    error(Rule::CustomerCurrencyRefused, "customer.currency.refused",
          "Die Währung: '{value}' ist nicht angelegt.", "Währung",
          "Die Währung berichtigen. Währungen werden nie angelegt."),
    error(Rule::CustomerReceiptDate, "customer.receipt_date.invalid",
          "Das Eingangsdatum: '{value}' ist kein Datum.", "Eingangsdatum",
          "Den Vorgang neu einlesen lassen."),
    // Hints at a customer.
    hint(Rule::CustomerEmptied, "customer.master.emptied", "Im Kundenstamm geleert: {value}", "",
         DialogTerms{"HI", "txtKundennummer"},
         "Sollen die Angaben bleiben, sie im Vorgang eintragen, ehe er verarbeitet wird."),
    hint(Rule::CustomerUnwritten, "customer.master.unwritten", "Nicht in den Kundenstamm übernommen: {value}",
         "", DialogTerms{"HI", "txtKundennummer"},
         "In der Warenwirtschaft eintragen, wenn die Angaben gelten sollen."),
    hint(Rule::CustomerAddressUnstored, "customer.address.unstored",
         "Die {value} hat keine Adressnummer und wird nicht gespeichert.", "",
         DialogTerms{"HI", "txtKundennummer"}, "Unter Adressen… eine Adressnummer eintragen."),
    hint(Rule::CustomerAbroad, "customer.country.abroad",
         "Neukunde im Land '{value}' mit dem Steuermerkmal des Inlands (MwSt_KZ '{stored}').", "Land",
         DialogTerms{"HI", "txtLand"},
         "Das Steuermerkmal in der Warenwirtschaft setzen, ehe die Aufträge des Kunden verarbeitet werden."),
    // Check of a contract.
    warning(Rule::ContractKind, "contract.kind.unknown", "Vertragsart ist nicht angelegt", "Vertragsart",
            DialogTerms{"VA", "tdbVertragsart", "Die Vertragsart: {value} ist noch nicht angelegt."},
            "Aus der Liste wählen."),
    warning(Rule::ContractQuantity, "contract.quantity.invalid", "Menge ist falsch", "Menge", quantityTerms,
            "Eine Anzahl ab 1 eintragen."),
    warning(Rule::SingleContractQuantity, "contract.single_quantity.invalid", "Menge ist faslch", "Menge",
            quantityTerms, "Eine Anzahl ab 1 eintragen."),
    warning(Rule::ContractState, "contract.state.unknown", "Zustand ist falsch", "Zustand",
            DialogTerms{"ZD", "cboZustand", "Zustand konnte nicht ermittelt werden."},
            "Aktiv, nur Info oder Erledigt wählen.")
        .noted("Ein leerer Zustand wird als Aktiv geschrieben; ihn zeigt nur der geöffnete Vorgang."),
    error(Rule::ContractDate, "contract.date.invalid", "Vertragsdatum ist falsch", "Vertragsdatum",
          DialogTerms{"VD", "tdbdtVertragsdatum"}, "Ein Datum eintragen; F4 öffnet den Kalender."),
    error(Rule::ContractDateMissing, "contract.date.missing", "Vertragsdatum ist falsch", "Vertragsdatum",
          DialogTerms{"VD", "tdbdtVertragsdatum", "Vertragsdatum wurde nicht angegeben"},
          "Ein Datum eintragen; F4 öffnet den Kalender."),
    error(Rule::ContractBegin, "contract.begin.invalid", "Vertragsbeginn ist falsch", "Vertragsbeginn",
          DialogTerms{"VB", "tdbdtVertragsbeginn"}, "Ein Datum eintragen; F4 öffnet den Kalender."),
    error(Rule::ContractBeginMissing, "contract.begin.missing", "Vertragsbeginn ist falsch", "Vertragsbeginn",
          DialogTerms{"VB", "tdbdtVertragsbeginn", "Vertragsbeginn wurde nicht angegeben"},
          "Ein Datum eintragen; F4 öffnet den Kalender."),
    error(Rule::ContractObject, "contract.object.unknown", "Vertragsgegenstand ist nicht angelegt",
          "Artikelnummer",
          DialogTerms{"VGG", "txtVertragsgegenstand", "Vertragsgegenstand: {value} wurde nicht angelegt."},
          "Mit F4 suchen."),
    notice(Rule::ContractInterval, "contract.interval.unusual", "Intervall",
           DialogTerms{"INT", "cboIntervall", "Intervall: {value} nicht zulässig!"},
           "1, 3, 6 oder 12 Monate wählen.")
        .noted("Geschrieben wird jedes Intervall, ein fehlendes als 12 Monate."),
    // Refusal of a contract.
    error(Rule::ContractCustomerRefused, "contract.customer.refused",
          "Die Kundennummer: '{value}' wurde noch nicht angelegt.", "Kundennummer",
          "Zuerst den Kunden verarbeiten, oder die Nummer berichtigen."),
    error(Rule::ContractKindRefused, "contract.kind.refused",
          "Die Vertragsart: '{value}' wurde noch nicht angelegt.", "Vertragsart", "Aus der Liste wählen."),
    // The quote after the object number has no opening one, on purpose.
    error(Rule::ContractRelationRefused, "contract.relation.refused",
          "Es konnte keine Beziehung zwischen Vertragsart: '{value}' und Vertragsgegenstandsnummer: "
          "{stored}' ermittelt werden.",
          "Vertragsart", "Vertragsart und Gegenstand wählen, die in der Warenwirtschaft zusammengehören."),
    error(Rule::ContractObjectRefused, "contract.object.refused",
          "Die Vertragsgegenstandsnummer: '{value}' wurde noch nicht angelegt.", "Artikelnummer",
          "Mit F4 suchen."),
    error(Rule::ContractPriceTooLarge, "contract.price.too_large", "Der Preis: '{value}' ist zu groß.",
          "Preis", "Den Wert berichtigen."),
    error(Rule::ContractPriceNoNumber, "contract.price.no_number", "Der Preis: '{value}' ist keine Zahl.",
          "Preis", "Den Wert berichtigen."),
    error(Rule::ContractQuantityTooLarge, "contract.quantity.too_large", "Die Menge: '{value}' ist zu groß.",
          "Menge", "Den Wert berichtigen."),
    error(Rule::ContractQuantityNoNumber, "contract.quantity.no_number",
          "Die Menge: '{value}' ist keine Zahl.", "Menge", "Den Wert berichtigen."),
    // Check of an order.
    warning(Rule::OrderNote, "order.note.present", "Achtung es ist eine Notiz hinterlegt.", "Bemerkung",
            DialogTerms{"NO", "txtHinweis"}, "Die Bemerkung lesen, dann freigeben.")
        .noted(ownModeOnly),
    warning(Rule::OrderSalesRep, "order.sales_rep.unknown", "Vertreter1", "Vertreter1", salesRepTerms,
            "Aus der Liste wählen."),
    warning(Rule::OrderShippingMethod, "order.shipping_method.unknown", "Versandart", "Versandart",
            shippingTerms, "Aus der Liste wählen."),
    warning(Rule::OrderPaymentMethod, "order.payment_method.unknown", "Zahlungsart", "Zahlungsart",
            paymentTerms, "Aus der Liste wählen."),
    warning(Rule::OrderMarkZB, "order.mark_zb.method", "Ind_Field ZB", "IndFild1",
            DialogTerms{"IF1", "txtIndFild1"},
            "Das Kennzeichen ZB verlangt eine andere Zahlungsart: diese berichtigen.")
        .noted(ownModeOnly),
    warning(Rule::OrderMarkZA, "order.mark_za.method", "IndField3 ZA", "IndFild3",
            DialogTerms{"IF3", "txtIndFild3"},
            "Das Kennzeichen ZA verlangt eine andere Zahlungsart: diese berichtigen.")
        .noted(ownModeOnly),
    warning(Rule::OrderMarkMK, "order.mark_mk.method", "Ind_Field MK", "IndFild4",
            DialogTerms{"IF4", "txtIndFild4"},
            "Das Kennzeichen MK verlangt eine andere Versandart: diese berichtigen.")
        .noted(ownModeOnly),
    warning(Rule::OrderPaymentTerms, "order.payment_terms.unknown", "ZahlungsbedSchl", "ZahlungsbedSchl",
            termsTerms, "Aus der Liste wählen."),
    warning(Rule::OrderBank, "order.bank.unknown", "Bankverbindung", "Bankleitzahl", bankTerms,
            "Mit F4 suchen."),
    warning(Rule::OrderDeliveryKey, "order.delivery_key.unknown", "VS_KdNr", "VS_KdNr",
            "Die Nummern unter Versand an berichtigen.")
        .noted("Die Prüfung nennt sie zweimal: als Warnung und als order.delivery.unknown. Der geöffnete "
               "Vorgang zeigt nur den Fehler."),
    warning(Rule::OrderInvoiceKey, "order.invoice_key.unknown", "RG_KdNr", "RG_KdNr",
            "Die Nummern unter Rechnung an berichtigen.")
        .noted("Die Prüfung nennt sie zweimal: als Warnung und als order.invoice.unknown. Der geöffnete "
               "Vorgang zeigt nur den Fehler."),
    warning(Rule::OrderAccount, "order.account.unknown", "Hauptkonto", "Hauptkonto", accountTerms,
            "Mit F4 suchen oder leeren."),
    error(Rule::OrderCustomer, "order.customer.unknown", "Kunde nicht angelegt", "Kundennummer",
          DialogTerms{"KN", "txtKundennummer", "Kundennummer {value} ist nicht angelegt."},
          "Mit F4 suchen, oder zuerst den Kunden verarbeiten."),
    error(Rule::OrderDelivery, "order.delivery.unknown", "Versandanschrift nicht angelegt", "VS_KdNr",
          deliveryTerms, "Die Nummern unter Versand an berichtigen."),
    error(Rule::OrderInvoice, "order.invoice.unknown", "Rechnungsanschrift nicht angelegt", "RG_KdNr",
          invoiceTerms, "Die Nummern unter Rechnung an berichtigen."),
    warning(Rule::OrderCreditLimit1, "order.credit_limit1.reached",
            "Kreditlimit 1 ist überschritten (Warnhinweis)", "Kundennummer",
            DialogTerms{"KL1", "txtKundennummer"}, "Die offenen Posten des Kunden klären, oder freigeben."),
    error(Rule::OrderCreditLimit2, "order.credit_limit2.reached",
          "Kreditlimit 2 ist überschritten (Auftragssperre)", "Kundennummer",
          DialogTerms{"KL2", "txtKundennummer"}, "Die offenen Posten des Kunden klären, oder freigeben."),
    error(Rule::OrderCreditLimitDoubtful, "order.credit_limit.doubtful",
          "Das Kreditlimit '{value}' ist nicht eindeutig: {stored}.", "Kundennummer",
          DialogTerms{"KL", "txtKundennummer"},
          "Das Limit des Kunden oder der Einstellungen ohne Tausenderpunkt eintragen."),
    error(Rule::OrderNoPositions, "order.positions.missing", "Auftrag ohne Positionen angelegt.",
          "Positionen", DialogTerms{"PO", grid}, "Eine Position anfügen."),
    error(Rule::OrderPriceFailed, "order.price.failed", "PLU Fehler", "Preis",
          DialogTerms{"PR", grid, "Es ist ein Fehler beim ermitteln des Preises aufgetreten."},
          "Artikel und Einheit prüfen. Bleibt es dabei, die Betreuung fragen."),
    warning(Rule::OrderPriceMissing, "order.price.missing", "Preis nicht gefunden", "Preis",
            DialogTerms{"PR", grid, "Es konnte kein Preis gefunden werden!"},
            "Den Preis in der Warenwirtschaft pflegen, oder freigeben."),
    warning(Rule::OrderPriceDiffers, "order.price.differs", "Preis ist nicht identisch", "Preis",
            DialogTerms{"PR", grid, "Ermittelter Preis: {stored.00} weicht vom Importpreis: {value.00} ab!"},
            "Den Preis prüfen.")
        .countingInOwnMode()
        .noted("Der geöffnete Vorgang vergleicht jeden angelieferten Preis; zum Zustand zählt er nur in "
               "Installationen mit kundenspezifischen Werten."),
    warning(Rule::OrderCostAssignment, "order.cost_assignment.missing", "Kostenzuordnung", "KostID",
            DialogTerms{"KO", grid, "Achtung: Fehlende Kostenzuordnung für Artikel '{stored}'!"},
            "Die Nummer unter Details eintragen."),
    warning(Rule::OrderStock, "order.stock.too_small", "Lagerbestand", "Menge",
            DialogTerms{"LB", grid, "Achtung: Lagerbestand für Artikel '{stored}' reicht nicht aus!"},
            "Die Menge ändern, oder freigeben."),
    error(Rule::OrderArticle, "order.article.unknown", "Artikel ist nicht angelegt", "Artikelnummer",
          DialogTerms{"AR", grid, "Der Artikel '{value}' ist nicht angelegt."},
          "In der Zelle F4 drücken und den Artikel suchen."),
    // Only in the dialog of an order.
    orderLine(Rule::OrderName1, "order.name1.differs", "Bez1",
              {"BZ1", "txtAnschrift", "Bezeichnung 1 ist nicht identisch: {stored}"}),
    orderLine(Rule::OrderName2, "order.name2.differs", "Bez2",
              {"BZ2", "txtAnschrift", "Bezeichnung 2 ist nicht identisch: {stored}"}),
    orderLine(Rule::OrderName3, "order.name3.differs", "Bez3",
              {"BZ3", "txtAnschrift", "Bezeichnung 3 ist nicht identisch: {stored}"}),
    orderLine(Rule::OrderStreet, "order.street.differs", "Strasse",
              {"STR", "txtAnschrift", "Straße ist nicht identisch: {stored}"}),
    orderLine(Rule::OrderCountry, "order.country.differs", "Land",
              {"LD", "txtAnschrift", "Land ist nicht identisch: {stored}"}),
    orderLine(Rule::OrderPostCode, "order.post_code.differs", "PLZ",
              {"PLZ", "txtAnschrift", "Postleitzahl ist nicht identisch: {stored}"}),
    orderLine(Rule::OrderCity, "order.city.differs", "Ort",
              {"ORT", "txtAnschrift", "Ort ist nicht identisch: {stored}"}),
    notice(Rule::OrderDeliveryLines, "order.delivery.differs", "VS_AdrNr",
           DialogTerms{"VA", "txtVersandAdr", "Versandadresse ist nicht identisch: {stored}"},
           "Unter Adressen… mit dem Stamm vergleichen."),
    notice(Rule::OrderInvoiceLines, "order.invoice.differs", "RG_AdrNr",
           DialogTerms{"RA", "txtRechnungAdr", "Rechnungsadresse ist nicht identisch: {stored}"},
           "Unter Adressen… mit dem Stamm vergleichen."),
    notice(Rule::CustomersShippingMethod, "order.customers_shipping_method.unknown", "",
           DialogTerms{"VSK", "txtKundennummer", "Versandart Kunde: {value} wurde noch nicht angelegt."},
           "Den Kunden in der Warenwirtschaft berichtigen.")
        .noted(ownModeOnly),
    notice(Rule::CustomersPaymentMethod, "order.customers_payment_method.unknown", "",
           DialogTerms{"ZAK", "txtKundennummer", "Zahlungsart Kunde: {value} wurde noch nicht angelegt."},
           "Den Kunden in der Warenwirtschaft berichtigen.")
        .noted(ownModeOnly),
    notice(Rule::OrderQuantityMissing, "order.quantity.missing", "Menge",
           DialogTerms{"ME", grid, "Die Menge der Position fehlt."}, "Die Menge eintragen."),
    notice(Rule::OrderUnitUnlisted, "order.unit.unlisted", "Mengeneinheit",
           DialogTerms{"EH", grid, "Mengeneinheit: {value} wurde noch nicht angelegt."},
           "Eine Einheit aus der Liste wählen."),
    // Refusal of an order.
    error(Rule::OrderNumberNone, "order.number.none", "Es konnte keine Auftragsnummer ermittelt werden.", "",
          "Den Buchungskreis der Aufträge und seinen Nummernkreis prüfen lassen."),
    error(Rule::OrderNumberInUse, "order.number.in_use",
          "Die Auftragsnummer: '{value}' im Buchungskreis '{stored}' ist bereits vergeben. Bitte prüfen Sie "
          "den Nummernkreis der Aufträge.",
          "", "Den Nummernkreis der Aufträge prüfen lassen."),
    error(Rule::OrderCustomerRefused, "order.customer.refused",
          "Die Kundennummer: '{value}' wurde noch nicht angelegt.", "Kundennummer",
          "Zuerst den Kunden verarbeiten, oder die Nummer berichtigen."),
    error(Rule::OrderDeliveryStop, "order.customer.delivery_stop",
          "Die Kundennummer: '{value}' ist eine Liefersperre aktiviert.", "Kundennummer",
          "Die Liefersperre in der Warenwirtschaft klären."),
    error(Rule::OrderReceiptDate, "order.receipt_date.invalid",
          "Das Eingangsdatum: '{value}' ist kein Datum.", "Eingangsdatum",
          "Den Vorgang neu einlesen lassen."),
    error(Rule::OrderShippingMethodRefused, "order.shipping_method.refused",
          "Die Versandart: '{value}' wurde noch nicht angelegt.", "Versandart",
          "Den Schlüssel berichtigen, im Auftrag, beim Kunden oder in den Optionen."),
    error(Rule::OrderPaymentMethodRefused, "order.payment_method.refused",
          "Die Zahlungsart: '{value}' wurde noch nicht angelegt.", "Zahlungsart",
          "Den Schlüssel berichtigen, im Auftrag oder beim Kunden."),
    error(Rule::OrderPaymentTermsRefused, "order.payment_terms.refused",
          "Der ZahlungsbedSchl: '{value}' wurde noch nicht angelegt.", "ZahlungsbedSchl",
          "Den Schlüssel berichtigen, im Auftrag oder beim Kunden."),
    error(Rule::OrderSalesRepRefused, "order.sales_rep.refused",
          "Der Vertreter: '{value}' ist nicht angelegt.", "Vertreter1",
          "Den Vertreter berichtigen, im Auftrag oder beim Kunden."),
    error(Rule::OrderNoPositionsRefused, "order.positions.refused", "Auftrag ohne Positionen angelegt.",
          "Positionen", "Eine Position anfügen."),
    error(Rule::OrderArticleRefused, "order.article.refused",
          "Der Artikel: '{value}' wurde noch nicht angelegt.", "Artikelnummer",
          "Den Artikel suchen, oder in der Warenwirtschaft anlegen."),
    error(Rule::OrderArticleBlocked, "order.article.blocked", "Der Artikel: '{value}' ist gesperrt!",
          "Artikelnummer", "Einen anderen Artikel wählen, oder die Sperre aufheben lassen."),
    error(Rule::OrderPriceRefused, "order.price.refused", "PLU Fehler", "Preis",
          "Artikel und Einheit prüfen. Bleibt es dabei, die Betreuung fragen."),
    error(Rule::OrderPriceTooLarge, "order.price.too_large", "Der Preis: '{value}' ist zu groß.", "Preis",
          "Den Wert berichtigen."),
    error(Rule::OrderQuantityTooLarge, "order.quantity.too_large", "Die Menge: '{value}' ist zu groß.",
          "Menge", "Den Wert berichtigen."),
    error(Rule::OrderDiscountTooLarge, "order.discount.too_large", "Der Rabatt: '{value}' ist zu groß.",
          "Rabatt", "Den Wert berichtigen."),
    error(Rule::OrderPriceUnitTooLarge, "order.price_unit.too_large",
          "Die Preiseinheit: '{value}' ist zu groß.", "Preiseinheit", "Den Wert berichtigen."),
    error(Rule::OrderCostNumber, "order.cost_assignment.invalid",
          "Die Kostenzuordnung: '{value}' ist keine gültige Nummer.", "KostID",
          "Die Kostenzuordnung berichtigen, im Auftrag oder beim Kunden."),
    error(Rule::OrderTotalTooLarge, "order.total.too_large", "Die Summe des Auftrags ist zu groß.", "",
          "Mengen und Preise berichtigen."),
    error(Rule::OrderNoPositionNumber, "order.position_number.none",
          "Für die Fracht- und Gebührenzeilen ist keine Positionsnummer mehr frei.", "Positionsnummer",
          "Die Positionen anders nummerieren."),
    error(Rule::OrderTaxKey, "order.tax_key.missing",
          "Die Steuerschlüsselzuordnung konnte nicht ermittelt werden.", "",
          "Steuermerkmale von Kunde und Artikel in der Warenwirtschaft prüfen."),
    error(Rule::OrderTaxRate, "order.tax_rate.invalid",
          "Der Steuersatz des Steuerschlüssels: '{value}' ist keine Zahl.", "",
          "Den Steuerschlüssel in der Warenwirtschaft berichtigen."),
    error(Rule::OrderTaxChangeDay, "order.tax_change_day.unreadable",
          "Der Tag der Steuersatzänderung (DatumMwStÄnderung) konnte nicht gelesen werden.", "",
          "Den Tag in den Optionen berichtigen."),
    // Hints at an order.
    hint(Rule::OrderCurrency, "order.currency.ignored",
         "Die Währung '{value}' des Auftrags gilt nicht, der Kunde hat '{stored}'.", "Währung",
         DialogTerms{"HI", "txtKundennummer"}, "Währung und Preise klären."),
    hint(Rule::OrderExchangeRate, "order.exchange_rate.missing",
         "Zur Währung '{stored}' ist kein Wechselkurs angelegt.", "Währung",
         DialogTerms{"HI", "txtKundennummer"}, "Den Kurs in der Warenwirtschaft eintragen lassen."),
    hint(Rule::OrderCustomerWaits, "order.customer.waiting", "Kunde wird in diesem Lauf angelegt",
         "Kundennummer", DialogTerms{"HI", "txtKundennummer"}, "Kunden und Aufträge zusammen verarbeiten."),
    hint(Rule::OrderPriceReplaced, "order.price.replaced", "Preis {value} -> {stored}", "Preis",
         DialogTerms{"HI", "txtKundennummer"},
         "Es gilt der Preis der Warenwirtschaft. Preis oder Preisliste mit dem Absender klären."),
};

constexpr bool inOrder() {
  for (std::size_t i = 0; i < ruleTerms.size(); ++i)
    if (static_cast<std::size_t>(ruleTerms[i].rule) != i) return false;
  return true;
}

constexpr bool codesAreUnique() {
  for (std::size_t i = 0; i < ruleTerms.size(); ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (ruleTerms[i].code == ruleTerms[j].code) return false;
  return true;
}

/// Every rule has a text of the run or a dialog, a code and a remedy.
constexpr bool complete(const RuleTerms& row) {
  return !row.code.empty() && !row.remedy.empty() && !(row.run.empty() && row.dialog.text.empty()) &&
         row.dialog.code.empty() == row.dialog.control.empty();
}

/// The fields of an address are given by the finding and share a prefix.
bool namesField(std::string_view field, std::string_view text) {
  const auto isOfAddress = [](std::string_view name) {
    return name.starts_with("VS_") || name.starts_with("RG_");
  };
  return text == field ||
         (isOfAddress(field) && isOfAddress(text) && text.substr(0, 3) == field.substr(0, 3));
}

/// Whether the text has the literal parts of the pattern, and the right field if it names one. Goes as deep
/// as the pattern has placeholders.
// NOLINTNEXTLINE(misc-no-recursion)
bool fits(std::string_view pattern, std::string_view field, std::string_view text) {
  const std::size_t begin = pattern.find('{');
  if (begin == std::string_view::npos) return pattern == text;
  if (!text.starts_with(pattern.substr(0, begin))) return false;
  text.remove_prefix(begin);
  const std::size_t end = pattern.find('}');
  const bool isField = pattern.substr(begin, end - begin + 1) == "{field}";
  const std::string_view rest = pattern.substr(end + 1);
  const std::string_view literal = rest.substr(0, rest.find('{'));
  if (rest.empty()) return !isField || namesField(field, text);
  for (std::size_t at = text.find(literal); at != std::string_view::npos; at = text.find(literal, at + 1))
    if ((!isField || namesField(field, text.substr(0, at))) && fits(rest, field, text.substr(at)))
      return true;
  return false;
}

static_assert(ruleTerms.size() == static_cast<std::size_t>(lastRule) + 1 && inOrder(),
              "one row for each rule");
static_assert(codesAreUnique());
static_assert(std::ranges::all_of(ruleTerms, complete));

} // namespace

std::span<const RuleTerms> allTerms() { return ruleTerms; }

std::string withoutValues(const RuleTerms& row, std::string_view pattern) {
  std::string text;
  while (!pattern.empty()) {
    const std::size_t begin = std::min(pattern.find('{'), pattern.size());
    text += pattern.substr(0, begin);
    pattern.remove_prefix(begin);
    if (pattern.empty()) break;
    text += pattern.starts_with("{field}") ? row.field : "...";
    pattern.remove_prefix(pattern.find('}') + 1);
  }
  return text;
}

bool says(const RuleTerms& row, std::string_view text) {
  const auto saysIt = [&](std::string_view pattern) {
    if (pattern.empty() || pattern == "{value}") return false;
    return fits(pattern, row.field, text) || fits(pattern.substr(0, pattern.find("\r\n")), row.field, text);
  };
  return saysIt(row.run) || saysIt(row.dialog.text);
}

const RuleTerms& terms(Rule rule) { return ruleTerms[static_cast<std::size_t>(rule)]; }

} // namespace qx
