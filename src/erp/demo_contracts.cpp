#include "erp/demo_company.h"
#include "erp/table_filler.h"

#include <array>

namespace qx::erp::demo {
namespace {

struct ContractObject {
  std::string_view number;
  std::string_view text;
  std::string_view kind;
  std::string_view amount;
};

constexpr std::array objects{ContractObject{"W-PRESSE", "Wartung Hydraulikpresse", "WV", "49.90"},
                             ContractObject{"W-SAEGE", "Wartung Bandsäge", "WV", "29.50"},
                             ContractObject{"M-REGAL", "Miete Kleinteileregal", "MV", "12"},
                             ContractObject{"M-WASCH", "Miete Teilewaschtisch", "MV", "35"},
                             ContractObject{"L-SCHRAUBEN", "Abruf Schrauben und Muttern", "LV", "0"}};
constexpr std::size_t contractEvery = 4;

} // namespace

void fillContracts(Connection& connection) {
  TableFiller kinds(connection, "Vertragsarten");
  for (const auto& [kind, text] : {std::array<std::string_view, 2>{"WV", "Wartungsvertrag"},
                                   {"MV", "Mietvertrag"},
                                   {"LV", "Liefervertrag"}})
    kinds.add({{"Vertragsart", kind}, {"Kurztext", text}});

  TableFiller objectRows(connection, "Vertragsgegenstände");
  TableFiller belongings(connection, "VertragsGegenständePos");
  for (const ContractObject& object : objects) {
    objectRows.add({{"VertrGegenstandsNr", object.number}, {"Bez", object.text}});
    belongings.add({{"VertrGegenstandsNr", object.number}, {"Vertragsart", object.kind}});
  }

  TableFiller contracts(connection, "Verträge");
  for (std::size_t i = 0; i < customerCount; i += contractEvery) {
    const ContractObject& object = objects[i / contractEvery % objects.size()];
    contracts.add({{"Kundennummer", customer(i).number},
                   {"Vertragsnummer", "V" + padded(1000 + i, 5)},
                   {"Vertragsdatum", "15.12.2024"},
                   {"Vertragsbeginn", "01.01.2025"},
                   {"Vertragsende", "999999"},
                   {"Zahlungsweise", "0"},
                   {"Intervall", 12},
                   {"IntervallErstmals", 12},
                   {"IntervallVerlängerung", 12},
                   {"Zustand", "A"},
                   {"Vertragsart", object.kind},
                   {"VertrGegenstandsNr", object.number},
                   {"Anzahl", 1.0},
                   {"Betrag", *Money::parse(object.amount)},
                   {"Vertragstext", object.text}});
  }
}

} // namespace qx::erp::demo
