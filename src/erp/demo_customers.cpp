#include "erp/demo_company.h"

#include "erp/base_data.h"
#include "erp/table_filler.h"

#include <array>

namespace qx::erp::demo {
namespace {

constexpr std::array<std::string_view, 20> families{
    "Ahlendorn",  "Birkmoor",   "Dettenbach",   "Eulenriet",   "Falkhorst",  "Grabenstein", "Hasselbrook",
    "Immenkamp",  "Jägersried", "Kranichfeldt", "Lohmöller",   "Mühlschlag", "Nordholtz",   "Ottersdonk",
    "Pappelriet", "Quellhorst", "Reihersteg",   "Sperlingsau", "Tannschütt", "Uhlenwinkel"};
constexpr std::array<std::string_view, 15> trades{
    "Metallbau GmbH",  "Tischlerei",  "Landtechnik GmbH & Co. KG",
    "Haustechnik",     "Gartenbau",   "Elektro GmbH",
    "Fahrzeugbau AG",  "Schlosserei", "Holzhandel",
    "Bauservice GmbH", "Heizungsbau", "Druckerei",
    "Maschinenhandel", "Zimmerei",    "Gerätebau GmbH"};
constexpr std::array<std::string_view, 12> towns{"Erlenbrück",  "Hohenlauter", "Lindenfurt",   "Westerkoog",
                                                 "Birkenstett", "Oberquellen", "Sankt Almen",  "Niederwalde",
                                                 "Kranichsee",  "Felsenrode",  "Groß Uhlenau", "Süderstrand"};
constexpr std::array<std::string_view, 11> streets{
    "Am Wehr",  "Werkstraße",  "Lange Gasse", "Hafenring", "Zum Steinbruch", "Mühlenweg",
    "Nordwall", "Gewerbepark", "Torstraße",   "Ziegelhof", "An der Schleuse"};
constexpr std::array<std::string_view, 5> departments{"", "", "Einkauf", "", "Lager und Versand"};

constexpr std::array<std::string_view, 4> groups{"HW", "IN", "EH", "OE"};
constexpr std::array<std::string_view, 3> payments{"RE", "LS", "VK"};
constexpr std::array<std::string_view, 3> shippings{"PA", "SP", "AB"};
constexpr std::array<std::string_view, 3> terms{"30", "S2", "14"};
constexpr std::array<std::string_view, 3> lists{"", "H", "G"};
constexpr std::array<std::string_view, 4> reps{"101", "102", "103", "104"};
constexpr std::size_t addressEvery = 5;

template <std::size_t N>
std::string_view pick(const std::array<std::string_view, N>& from, std::size_t index) {
  return from[index % N];
}

/// No German postcode begins with two zeros.
std::string postcodeOf(std::size_t index) { return padded(101 + index % towns.size() * 16, 5); }

void addRow(TableFiller& filler, const Customer& c, std::size_t index) {
  filler.begin({{"Kundennummer", c.number},
                {"Suchbegriff", c.searchTerm},
                {"Bez1", c.name},
                {"Bez2", emptyToNull(Value(c.department))},
                {"Strasse", c.street},
                {"Land", c.country},
                {"PLZ", c.postcode},
                {"Ort", c.town},
                {"Telefon", c.phone},
                {"EMail", c.email},
                {"SprachKZ", "D"},
                {"Währung", "EUR"},
                {"KundeSeit", "01." + padded(index % 12 + 1, 2) + "." + std::to_string(1995 + index % 25)}});
  filler.set({{"Kundengruppe", c.group},
              {"VertreterNr1", c.rep},
              {"AnteilVertreter1", 100.0},
              {"Zahlungsart", c.payment},
              {"ZahlungsbedSchl", c.terms},
              {"Versandart", c.shipping},
              {"Preisliste", emptyToNull(Value(c.priceList))},
              {"Bankleitzahl", c.bankCode},
              {"Konto", c.account},
              {"Auftragsrabatt", index % 10 == 0 ? 2.0 : 0.0},
              {"AnzAB", 1},
              {"AnzLS", 1},
              {"AnzRG", 2}});
  if (c.number == blockedCustomer) filler.set({{"Liefersperre", true}});
  if (c.number == untaxedCustomer) filler.set({{"MwSt_KZ", "SZ"}});
  if (c.number == unionCustomer) filler.set({{"MwSt_KZ", unionTaxMark}, {"UstIdentNr", "XU000000000"}});
  if (c.number == warnedCustomer || c.number == overdrawnCustomer)
    filler.set({{"Kreditlimit1", *Money::parse("5000")}, {"Kreditlimit2", *Money::parse("8000")}});
  filler.finish();
}

void addCollectiveCustomer(TableFiller& filler, std::string_view number, std::string_view searchTerm,
                           std::string_view name) {
  filler.add({{"Kundennummer", number},
              {"Suchbegriff", searchTerm},
              {"Bez1", name},
              {"Land", "DE"},
              {"Kundengruppe", "EH"},
              {"Zahlungsart", "VK"},
              {"ZahlungsbedSchl", "00"},
              {"Versandart", "AB"},
              {"KZDivers", true},
              {"SprachKZ", "D"},
              {"Währung", "EUR"}});
}

void fillAddresses(Connection& connection) {
  TableFiller addresses(connection, "Adressenstamm");
  for (std::size_t i = 0; i < customerCount; i += addressEvery) {
    const Customer c = customer(i);
    addresses.add({{"Kundennummer", c.number},
                   {"Adressnummer", "1"},
                   {"Bez1", c.name},
                   {"Bez2", "Außenlager"},
                   {"Strasse", std::string(pick(streets, i + 4)) + " 1"},
                   {"Land", "DE"},
                   {"PLZ", postcodeOf(i + 3)},
                   {"Ort", pick(towns, i + 3)}});
  }
  addresses.add({{"Adressnummer", "MESSE"},
                 {"Bez1", "Messestand"},
                 {"Strasse", "Festplatz 1"},
                 {"Land", "DE"},
                 {"PLZ", "00101"},
                 {"Ort", towns[0]}});
}

void fillOpenItems(Connection& connection) {
  TableFiller items(connection, "OffenePosten");
  const auto add = [&](std::string_view number, std::string_view document, std::string_view amount) {
    items.add({{"Kundennummer", number},
               {"Belegnummer", document},
               {"Betrag", *Money::parse(amount)},
               {"Währung", "EUR"}});
  };
  add(warnedCustomer, "RG50001", "4300.50");
  add(warnedCustomer, "RG50002", "699.50");
  add(overdrawnCustomer, "RG50003", "9120.75");
  for (std::size_t i = 40; i < customerCount; i += 15)
    add(customer(i).number, "RG5" + padded(i, 4), std::to_string(100 + i) + ".90");
}

} // namespace

std::string padded(std::size_t number, std::size_t width) {
  std::string digits = std::to_string(number);
  return digits.size() < width ? digits.insert(0, width - digits.size(), '0') : digits;
}

Customer customer(std::size_t index) {
  const std::string family(pick(families, index));
  Customer c;
  c.number = std::to_string(70001 + index);
  c.searchTerm = family;
  // Customers who are not in the master data yet also have distinct names.
  c.name = family + (index < customerCount ? " " : " & Söhne ");
  c.name += pick(trades, index / families.size());
  c.department = pick(departments, index);
  c.street = std::string(pick(streets, index)) + " " + std::to_string(index % 89 + 1);
  c.country = c.number == unionCustomer ? "XU" : "DE";
  c.postcode = postcodeOf(index);
  c.town = pick(towns, index);
  c.phone = "00000/" + padded(index * 7 + 1000, 6);
  c.email = "einkauf@kunde" + c.number + ".example";
  c.group = pick(groups, index);
  c.rep = pick(reps, index / 3);
  c.payment = pick(payments, index);
  c.terms = pick(terms, index / 2);
  c.shipping = pick(shippings, index / 4);
  c.priceList = pick(lists, index);
  c.bankCode = "9990001" + std::to_string(index % 6);
  c.account = padded(4711000 + index * 37, 10);
  return c;
}

void fillCustomers(Connection& connection) {
  TableFiller filler(connection, "Kundenstamm");
  for (std::size_t i = 0; i < customerCount; ++i) addRow(filler, customer(i), i);
  addCollectiveCustomer(filler, collectiveCustomer, "BARVERKAUF", "Laufkundschaft");
  addCollectiveCustomer(filler, groupCustomer, "SAMMELBESTELLUNG", "Sammelbesteller");
  fillAddresses(connection);
  fillOpenItems(connection);
}

} // namespace qx::erp::demo
