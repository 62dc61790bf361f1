#include "cli/property_terms.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace qx::cli {
namespace {

constexpr std::string_view anyUnit = "in Mengeneinheit";

/// Those that mean the same everywhere.
constexpr auto common = std::to_array<PropertyTerm>({
    {"JobID", "Key of the job, which the sender chooses: one for each change. Without it a new one is made.",
     "", "", "SHOP-2026-000815"},
    {"ChildID", "Key of the position, unique among all positions. Without it a new one is made.", "", "",
     "SHOP-2026-000815-1"},
    {"JobType", "Code of kind and state; the kind follows from the type, so it may be left out."},
    {"Status", "Severity of the last check, set by the program."},
    {"Eingagsart", "Kind of receipt; taken but not stored."},
    {"Eingangsdatum", "Date of receipt, which is the date of an order and of its prices; today without it.",
     "", "", "24.11.2026"},
    {"Kundennummer", "Number of the customer, given out by the sender or by the ERP.", "", "", "70001"},
    {"Suchbegriff", "Search term of the customer.", "", "", "HAFENBAU"},
    {"Bez1", "First line of the name.", "", "", "Hafenbau Lindenfurt GmbH"},
    {"Bez2", "Second line of the name."},
    {"Bez3", "Third line of the name."},
    {"Strasse", "Street and house number.", "", "", "Kaiweg 8"},
    {"Land", "Country code.", "", "", "DE"},
    {"PLZ", "Postcode, as a text.", "", "", "01067"},
    {"Ort", "Town.", "", "", "Lindenfurt"},
    {"Telefon", "Telephone number.", "", "", "04921 555-0"},
    {"Telefax", "Fax number."},
    {"EMail", "E-mail address.", "", "", "einkauf@hafenbau.example"},
    {"Kundengruppe", "Code of the customer group.", "", "Kundengruppe"},
    {"Vertreter1", "Number of the sales representative.", "", "Vertreter"},
    {"Vertreter2", "Number of the second sales representative.", "", "Vertreter"},
    {"Vertreter3", "Number of the third sales representative.", "", "Vertreter"},
    {"Zahlungsart", "Code of the payment method.", "", "Zahlungsart"},
    {"Konto", "Account number of the bank account."},
    {"BLZ", "Bank code of the bank account.", "", "Bankleitzahl"},
    {"Kreditinstitut", "Name of the bank, for a bank code that is created."},
    {"Bemerkung", "Remark; the processing appends the number of the order."},
    {"Vertragsnummer", "Number of the contract; stored but not used by customers and orders."},
    {"Zahlungsweise", "Payment interval; stored but not used by customers and orders."},
    {"Währung", "Currency; an order is in the currency of its customer, whatever it names.", "", "Währung",
     "EUR"},
    {"WährungEingabe", "Currency of entry; compared with the table of currencies only.", "", "Währung"},
    {"Fehlertext", "Reasons of the last check or run, set by the program."},
    {"Betreff", "Subject of an order, as the number of the order in the shop.", "", "",
     "Bestellung 2026-0815"},
    {"Versandart", "Code of the shipping method; an order without it has that of its customer.", "",
     "Versandart"},
    {"ZahlungsbedSchl", "Code of the payment terms; an order without it has those of its customer.", "",
     "ZahlungsbedSchl"},
    {"Provisionsgruppe", "Code of the commission group."},
    {"UstIdentNr", "VAT identification number.", "", "", "DE123456789"},
    {"IndFild1", "First free text."},
    {"IndFild2", "Second free text; an order leaves it with the customer."},
    {"IndFild3", "Third free text; an order leaves it with the customer."},
    {"IndFild4", "Fourth free text."},
    {"VS_KdNr", "Customer who is supplied; without it the job's own."},
    {"VS_AdrNr", "Number of that customer's address for deliveries; without it the main address."},
    {"RG_KdNr", "Customer who is invoiced; without it the job's own."},
    {"RG_AdrNr", "Number of that customer's address for invoices; without it the main address."},
    {"Hauptkonto", "Number of the customer whose account is the main one."},
    {"VS_Bez1", "First name line of the delivery address."},
    {"VS_Bez2", "Second name line of the delivery address."},
    {"VS_Bez3", "Third name line of the delivery address."},
    {"VS_Strasse", "Street and house number of the delivery address."},
    {"VS_Land", "Country code of the delivery address."},
    {"VS_PLZ", "Postcode of the delivery address, as a text."},
    {"VS_Ort", "Town of the delivery address."},
    {"RG_Bez1", "First name line of the invoice address."},
    {"RG_Bez2", "Second name line of the invoice address."},
    {"RG_Bez3", "Third name line of the invoice address."},
    {"RG_Strasse", "Street and house number of the invoice address."},
    {"RG_Land", "Country code of the invoice address."},
    {"RG_PLZ", "Postcode of the invoice address, as a text."},
    {"RG_Ort", "Town of the invoice address."},
    {"Preisliste", "Code of the customer's price list.", "", "Preisliste"},
    {"Preistyp", "0: the customer's prices are net; 1: they contain the tax."},
    {"KundeSeit", "Customer since this day."},
    {"KundeVerlorenAm", "Day on which the customer was lost."},
    {"GrundVerloren", "Why the customer was lost, as a text."},
    {"GrundVerlorenSchl", "Why the customer or the contract was lost, as a code."},
    {"NeukundeJN", "Whether the customer is new; taken but not stored."},
    {"Liefertermin", "Date of delivery; a position without it has that of the order.", "", "", "2026-12-01"},
    {"KostID", "Number of the cost assignment; 0 for none."},
    {"Positionsnummer", "Number of the line; give one to all positions or to none."},
    {"Artikelnummer", "Number of the article.", "", "", "FEI-013"},
    {"Menge", "Quantity; a return is negative.", anyUnit, "", "2"},
    {"Wartungspreis", "Maintenance price; taken but not stored."},
    {"Preis",
     "Price in the customer's currency, net or with tax as Preistyp of the customer says; it is used only "
     "when "
     "the ERP finds none, else told as replaced.",
     "for Preiseinheit units of Mengeneinheit", "", "19.90"},
    {"Artikellangtext", "Text line below the position."},
    {"Auslieferungsmenge", "Quantity to deliver; without it Menge.", anyUnit},
    {"Fakturiermenge", "Quantity to invoice; without it Menge.", anyUnit},
    {"Lieferbereit", "Ready for delivery; without it as the option AuftragLieferbereit says."},
    {"Fakturierbereit", "Ready for invoicing; without it as the option AuftragFakturierbereit says."},
    {"Mengeneinheit", "Unit of the quantity; without it that of the article.", "", "Mengeneinheit", "ST"},
    {"Rabatt", "Discount that goes with Preis.", "percent"},
    {"Preiseinheit", "How many units Preis is for; 0 is 1.", anyUnit},
    {"Vertragsart", "Code of the contract type.", "", "Vertragsart"},
    {"Zustand", "A for active, as without it, I for information only, E for done."},
    {"Vertragstext", "Text of the contract; without it the name of the contract object."},
    {"Vertragsdatum", "Date of the signature; the run needs it.", "", "", "24.11.2026"},
    {"Vertragsbeginn", "First day of the contract; the run needs it.", "", "", "01.01.2027"},
    {"Vertragsende", "Last day of the contract; empty or 999999 for no end.", "", "", "999999"},
    {"Kündigungsgrund", "Why the contract was terminated; taken but not stored."},
    {"Intervall", "Time from invoice to invoice: 1, 3, 6 or 12.", "months", "", "12"},
    {"PreisabweichungGrund", "Why the price differs; taken but not stored, IndFild1 carries it."},
    {"PreisabweichungGenehmigender", "Who approved that price; taken but not stored, IndFild2 carries it."},
    {"PreisabweichungDatum", "Day of that approval; taken but not stored, IndFild3 carries it."},
    {"PreisabweichungBemerkung", "Remark on that price; taken but not stored, IndFild4 carries it."},
    {"GekuendigtAm", "Date of the termination."},
    {"ChkAbwBetrag", "Whether the amount differs; taken but not stored."},
});

/// Those that mean something else in a contract or its position.
constexpr auto ofContract = std::to_array<PropertyTerm>({
    {"Eingangsdatum", "Date of receipt; today without it.", "", "", "24.11.2026"},
    {"Vertragsnummer", "Number of the contract, given out by the sender.", "", "", "V90001"},
    {"Artikelnummer", "Number of the contract object.", "", "", "M-WASCH"},
    {"Menge", "Number of contract objects, more than 0.", "", "", "1"},
    {"Preis", "Amount of the contract in the currency of the ERP.", "for one interval", "", "240"},
    {"Bemerkung", "Remark."},
    {"IndFild1", "Why the price differs from the usual one."},
    {"IndFild2", "Who approved that price."},
    {"IndFild3", "Day of that approval."},
    {"IndFild4", "Remark on that price."},
    {"VS_KdNr", "Number of the customer who is supplied."},
});

} // namespace

const PropertyTerm& propertyTerm(ObjectKind kind, std::string_view property) {
  if (kind == ObjectKind::Contract || kind == ObjectKind::ContractPosition)
    if (const auto* const own = std::ranges::find(ofContract, property, &PropertyTerm::name);
        own != ofContract.end())
      return *own;
  const auto* const found = std::ranges::find(common, property, &PropertyTerm::name);
  if (found == common.end()) throw std::out_of_range("no terms of the property " + std::string(property));
  return *found;
}

} // namespace qx::cli
