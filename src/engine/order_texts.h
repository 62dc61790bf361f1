// The tokens of the order check and the sentences of the order writing.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace qx {

/// Tokens of the check. The odd spellings are part of what clerks know.
namespace order_tokens {

inline constexpr std::string_view note = "Achtung es ist eine Notiz hinterlegt.";
inline constexpr std::string_view salesRep = "Vertreter1";
inline constexpr std::string_view shippingMethod = "Versandart";
inline constexpr std::string_view paymentMethod = "Zahlungsart";
inline constexpr std::string_view fieldZB = "Ind_Field ZB";
inline constexpr std::string_view fieldZA = "IndField3 ZA";
inline constexpr std::string_view fieldMK = "Ind_Field MK";
inline constexpr std::string_view paymentTerms = "ZahlungsbedSchl";
inline constexpr std::string_view bank = "Bankverbindung";
inline constexpr std::string_view shippingKey = "VS_KdNr";
inline constexpr std::string_view invoiceKey = "RG_KdNr";
inline constexpr std::string_view account = "Hauptkonto";
inline constexpr std::string_view customer = "Kunde nicht angelegt";
inline constexpr std::string_view shippingAddress = "Versandanschrift nicht angelegt";
inline constexpr std::string_view invoiceAddress = "Rechnungsanschrift nicht angelegt";
inline constexpr std::string_view creditLimit1 = "Kreditlimit 1 ist überschritten (Warnhinweis)";
inline constexpr std::string_view creditLimit2 = "Kreditlimit 2 ist überschritten (Auftragssperre)";
inline constexpr std::string_view noPositions = "Auftrag ohne Positionen angelegt.";
inline constexpr std::string_view priceFailed = "PLU Fehler";
inline constexpr std::string_view priceNotFound = "Preis nicht gefunden";
inline constexpr std::string_view priceDiffers = "Preis ist nicht identisch";
inline constexpr std::string_view costAssignment = "Kostenzuordnung";
inline constexpr std::string_view stock = "Lagerbestand";
inline constexpr std::string_view article = "Artikel ist nicht angelegt";

/// Those that only the installation's own mode can find.
inline constexpr std::array customerSpecific{note, fieldZB, fieldZA, fieldMK, priceDiffers};
/// All others.
inline constexpr std::array general{
    salesRep,    shippingMethod, paymentMethod,   paymentTerms,   bank,         shippingKey,  invoiceKey,
    account,     customer,       shippingAddress, invoiceAddress, creditLimit1, creditLimit2, noPositions,
    priceFailed, priceNotFound,  costAssignment,  stock,          article};

} // namespace order_tokens

/// A sentence with one value in it.
struct OrderSentence {
  std::string_view before;
  std::string_view after;

  std::string with(std::string_view value) const { return std::string(before).append(value).append(after); }
};

/// Why an order is not written.
namespace order_failures {

inline constexpr OrderSentence noNumber{"Es konnte keine Auftragsnummer ermittelt werden.", ""};
/// The value is the number, "' im Buchungskreis '" and the circle.
inline constexpr OrderSentence numberInUse{
    "Die Auftragsnummer: '", "' ist bereits vergeben. Bitte prüfen Sie den Nummernkreis der Aufträge."};
inline constexpr OrderSentence customer{"Die Kundennummer: '", "' wurde noch nicht angelegt."};
inline constexpr OrderSentence deliveryStop{"Die Kundennummer: '", "' ist eine Liefersperre aktiviert."};
inline constexpr OrderSentence receiptDate{"Das Eingangsdatum: '", "' ist kein Datum."};
inline constexpr OrderSentence shippingMethod{"Die Versandart: '", "' wurde noch nicht angelegt."};
inline constexpr OrderSentence paymentMethod{"Die Zahlungsart: '", "' wurde noch nicht angelegt."};
inline constexpr OrderSentence paymentTerms{"Der ZahlungsbedSchl: '", "' wurde noch nicht angelegt."};
inline constexpr OrderSentence salesRep{"Der Vertreter: '", "' ist nicht angelegt."};
inline constexpr OrderSentence noPositions{order_tokens::noPositions, ""};
inline constexpr OrderSentence article{"Der Artikel: '", "' wurde noch nicht angelegt."};
inline constexpr OrderSentence blockedArticle{"Der Artikel: '", "' ist gesperrt!"};
inline constexpr OrderSentence priceFailed{order_tokens::priceFailed, ""};
inline constexpr OrderSentence priceTooLarge{"Der Preis: '", "' ist zu groß."};
inline constexpr OrderSentence totalTooLarge{"Die Summe des Auftrags ist zu groß.", ""};
inline constexpr OrderSentence noPositionNumber{
    "Für die Fracht- und Gebührenzeilen ist keine Positionsnummer mehr frei.", ""};
inline constexpr OrderSentence costNumber{"Die Kostenzuordnung: '", "' ist keine gültige Nummer."};
inline constexpr OrderSentence taxKey{"Die Steuerschlüsselzuordnung konnte nicht ermittelt werden.", ""};

/// All but the two that no order alone can bring about, a number in use and line numbers used up, and the
/// cost number, which has another type in any staging table but a sender's own.
inline constexpr std::array all{noNumber,       customer,     deliveryStop,  receiptDate,   shippingMethod,
                                paymentMethod,  paymentTerms, salesRep,      noPositions,   article,
                                blockedArticle, priceFailed,  priceTooLarge, totalTooLarge, taxKey};

} // namespace order_failures

/// At the end of a run, followed by the keys of the entries.
inline constexpr std::string_view malformedFees =
    "Die Datei Zubehoer.ini enthält fehlerhafte Einträge. Ihre Gebühren wurden nicht berechnet: ";

/// At the end of a run, followed by the numbers of the heavy cash-on-delivery orders.
inline constexpr std::string_view heavyCashOnDelivery =
    "Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: ";

} // namespace qx
