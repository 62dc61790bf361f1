#include "erp/base_data.h"

#include "erp/schema.h"
#include "erp/table_filler.h"

namespace qx::erp {
namespace {

void fillCurrency(Connection& connection) {
  TableFiller(connection, "Währungen")
      .add({{"Währung", "EUR"}, {"Langtext", "Euro"}, {"Wechselkurs", 1.0}, {"Kursbehandlung", 0}});
  TableFiller(connection, "Einstellungen")
      .add({{"Section", "Allgemein"}, {"Key", "Landeswährung"}, {"Value", "EUR"}});
}

void fillTax(Connection& connection) {
  TableFiller rates(connection, "Steuerschlüssel");
  for (const auto& [taxKey, rate] : {std::pair{taxFree, 0.0}, {reducedTax, 7.0}, {fullTax, 19.0}})
    rates.add({{"Steuerschlüssel", taxKey}, {"MwSt_Satz", rate}});

  // Customers abroad are never taxed.
  TableFiller keys(connection, "Steuerschlüsselzuordnung");
  for (const std::string_view customer : {domesticTaxMark, unionTaxMark, exportTaxMark})
    for (const auto& [article, domesticKey] :
         {std::pair{fullTaxArticle, fullTax}, {reducedTaxArticle, reducedTax}, {taxFreeArticle, taxFree}}) {
      const std::int16_t taxKey = customer == domesticTaxMark ? domesticKey : taxFree;
      keys.add({{"MwStKZKunde", customer},
                {"MwStKZArtikel", article},
                {"Steuerschlüssel", taxKey},
                {"SteuerschlüsselNeu", taxKey}});
    }
}

void fillNumberRange(Connection& connection) {
  TableFiller(connection, "Nummernkreise")
      .add({{"NSchl", "AB"}, {"Buchungskreis", 1}, {"Aktiviert", true}, {"aktuellerWert", 0}});
}

} // namespace

void fillBaseData(Connection& connection) {
  fillCurrency(connection);
  fillTax(connection);
  fillNumberRange(connection);
}

} // namespace qx::erp
