#include "erp/demo_company.h"
#include "erp/table_filler.h"

#include <array>
#include <initializer_list>
#include <utility>

namespace qx::erp::demo {
namespace {

using CodeAndText = std::pair<std::string_view, std::string_view>;

void fillPairs(Connection& connection, std::string_view table, ColumnName code, ColumnName text,
               std::initializer_list<CodeAndText> rows) {
  TableFiller filler(connection, table);
  for (const auto& [key, meaning] : rows) filler.add({{code, key}, {text, meaning}});
}

void fillSalesReps(Connection& connection) {
  TableFiller reps(connection, "Vertreter");
  for (const auto& [number, name, first, town] :
       {std::array<std::string_view, 4>{"101", "Feldweg", "Anna", "Erlenbrück"},
        {"102", "Brückner-Ried", "Jonas", "Kranichsee"},
        {"103", "Sandvoort", "Käthe", "Felsenrode"},
        {"104", "Innendienst", "", ""}})
    reps.add({{"VertreterNr", number},
              {"Suchbegriff", name},
              {"Bez1", name},
              {"Bez2", emptyToNull(Value(first))},
              {"Ort", emptyToNull(Value(town))}});
}

void fillPaymentTerms(Connection& connection) {
  TableFiller filler(connection, "Zahlungsbedingungen");
  filler.add({{"ZahlbedSchl", "00"}});
  filler.add({{"ZahlbedSchl", "14"}, {"NettoTage", 14}});
  filler.add({{"ZahlbedSchl", "30"}, {"NettoTage", 30}});
  filler.add({{"ZahlbedSchl", "S2"}, {"SkontoTage1", 10}, {"SkontoProzent1", 2.0}, {"NettoTage", 30}});
  filler.add({{"ZahlbedSchl", "S3"},
              {"SkontoTage1", 8},
              {"SkontoProzent1", 3.0},
              {"SkontoTage2", 14},
              {"SkontoProzent2", 2.0},
              {"NettoTage", 60}});
}

void fillUnits(Connection& connection) {
  TableFiller units(connection, "Mengeneinheiten");
  units.add({{"Mengeneinheit", "ST"}, {"Langtext", "Stück"}, {"AnzNK", 0}});
  units.add({{"Mengeneinheit", "PK"}, {"Langtext", "Packung"}, {"AnzNK", 0}});
  units.add({{"Mengeneinheit", "KT"}, {"Langtext", "Karton"}, {"AnzNK", 0}});
  units.add({{"Mengeneinheit", "H"}, {"Langtext", "Stunde"}, {"AnzNK", 2}});
  fillPairs(connection, "MengeneinheitenAltern", "Alternativ", "Mengeneinheit",
            {{"Stck", "ST"}, {"Stück", "ST"}, {"PCE", "ST"}, {"Karton", "KT"}, {"Pack", "PK"}, {"Std", "H"}});
  TableFiller conversions(connection, "Umrechnungen");
  conversions.add({{"Mengeneinheit", "PK"}, {"Basiseinheit", "ST"}, {"Faktor", 100.0}});
  conversions.add({{"Mengeneinheit", "KT"}, {"Basiseinheit", "ST"}, {"Faktor", 1000.0}});
}

void fillForeignCurrencies(Connection& connection) {
  TableFiller filler(connection, "Währungen");
  filler.add({{"Währung", "USD"}, {"Langtext", "US-Dollar"}, {"Wechselkurs", 1.1}, {"Kursbehandlung", 0}});
  filler.add(
      {{"Währung", "CHF"}, {"Langtext", "Schweizer Franken"}, {"Wechselkurs", 0.95}, {"Kursbehandlung", 0}});
}

/// The rate rose from 16 to 19 percent on the day in the setting; older orders have the older key.
void fillTaxChange(Connection& connection) {
  TableFiller(connection, "Steuerschlüssel").add({{"Steuerschlüssel", 4}, {"MwSt_Satz", 16.0}});
  connection.execute(
      sql("Update Steuerschlüsselzuordnung Set Steuerschlüssel = 4 Where MwStKZKunde = 'IN' And "
          "MwStKZArtikel = 'V'"_sql));
  TableFiller(connection, "Einstellungen")
      .add({{"Section", "Allgemein"}, {"Key", "DatumMwStÄnderung"}, {"Value", "20070101000000"}});
}

} // namespace

void fillCodes(Connection& connection) {
  fillPairs(connection, "Kundengruppen", "Kundengruppe", "Langtext",
            {{"HW", "Handwerk"}, {"IN", "Industrie"}, {"EH", "Einzelhandel"}, {"OE", "Öffentliche Hand"}});
  fillPairs(connection, "Zahlungsarten", "Zahlungsart", "Kurztext",
            {{"RE", "Rechnung"}, {"LS", "Lastschrift"}, {"VK", "Vorkasse"}, {"NN", "Nachnahme"}});
  fillPairs(connection, "Versandtexte", "Versandart", "Kurztext",
            {{"PA", "Paketdienst"}, {"SP", "Spedition"}, {"AB", "Abholung"}, {"EX", "Express"}});
  fillPairs(connection, "PreislistenKopf", "Preisliste", "Langtext",
            {{"H", "Händler"}, {"G", "Großabnehmer"}});
  fillPairs(connection, "Kreditinstitute", "Bankleitzahl", "Kreditinstitut",
            {{"99900010", "Musterbank Erlenbrück"},
             {"99900011", "Beispielkasse Lindenfurt"},
             {"99900012", "Musterbank Kranichsee"},
             {"99900013", "Probebank Westerkoog"},
             {"99900014", "Beispielkasse Felsenrode"},
             {"99900015", "Probebank Süderstrand"}});
  fillPairs(
      connection, "Lieferanten", "Lieferantennummer", "Bez1",
      {{"80001", "Schraubenwerk Beispiel"}, {"80002", "Muster-Werkzeuge"}, {"80003", "Klebstoffhaus Probe"}});
  fillSalesReps(connection);
  fillPaymentTerms(connection);
  fillUnits(connection);
  fillForeignCurrencies(connection);
  fillTaxChange(connection);
}

} // namespace qx::erp::demo
