#include "erp/schema_table.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

constexpr auto protokolle = list(key("ID"), text("Titel"), code("Art"), code("Liste"), stamp("Datum"));
constexpr auto protokollpositionen = list(
    key("ID"), key("Zeile", ColumnType::Integer), text("Text0"), text("Text1"), text("Text2"), text("Text3"),
    text("Text4"), text("Text5"), text("Text6"), text("Text7"), text("Text8"), text("Memo0"));

/// A code whose empty text means all.
constexpr SchemaColumn orAny(SchemaColumn column) { return withDefault(column, ColumnDefault::EmptyText); }

constexpr auto verkaufspreise =
    list(orAny(code("Preisliste")), orAny(code("Kundennummer")), code("Artikelnummer"), code("Mengeneinheit"),
         real("Menge"), stamp("GueltigAb"), money("Preis"), money("KalkPreis"), real("Preiseinheit"),
         code("KZRabattart"), code("KZRabatt1"), code("KZRabatt2"), code("KZRabatt3"), real("Rabatt1"),
         real("Rabatt2"), real("Rabatt3"));
/// By the article alone: its prices then come in their order without sorting, and what a customer and a price
/// list leave of them cannot be sought by further columns.
constexpr std::array verkaufspreiseIndexes{SchemaIndex{"Verkaufspreise_Artikel", {"Artikelnummer"}}};

constexpr auto einkaufspreise =
    list(code("Lieferantennummer"), code("Artikelnummer"), code("Mengeneinheit"), real("Menge"),
         stamp("GueltigAb"), money("EKPreis"), real("EKPreiseinheit"), code("EKRabattart"), real("EKRabatt1"),
         real("EKRabatt2"), real("EKRabatt3"));
constexpr std::array einkaufspreiseIndexes{
    SchemaIndex{"Einkaufspreise_Artikel", {"Artikelnummer", "Lieferantennummer"}}};

constexpr auto offenePosten =
    list(code("Kundennummer"), code("Belegnummer"), money("Betrag"), code("Währung"));
constexpr std::array offenePostenIndexes{SchemaIndex{"OffenePosten_Kunde", {"Kundennummer"}}};

constexpr auto umrechnungen =
    list(orAny(key("Artikelnummer")), key("Mengeneinheit"), key("Basiseinheit"), real("Faktor"));
constexpr auto einstellungen = list(key("Section"), key("Key"), text("Value"));
constexpr auto benutzer =
    list(key("UserName"), code("PersonalNr"), withDefault(small("Buchungskreis"), ColumnDefault::One));
constexpr auto adressindex = list(key("Kundennummer"), key("Art", ColumnType::Small), code("Suchtext"));
constexpr auto lieferanten = list(key("Lieferantennummer"), code("Bez1"));
constexpr auto schemastand = list(integer("Version"));
constexpr auto importlaeufe =
    list(key("LaufID"), stamp("Beginn"), stamp("Ende"), code("Ausgang"), integer("Verarbeitet"),
         integer("Erledigt"), integer("Warnungen"), integer("Fehler"), integer("Wartend"), code("Benutzer"),
         text("Programm"), code("Protokoll"));
constexpr std::array importlaeufeIndexes{SchemaIndex{"Importlaeufe_Beginn", {"Beginn"}}};

constexpr std::array componentTableList{SchemaTable{"Protokolle", protokolle, {}},
                                        SchemaTable{"Protokollpositionen", protokollpositionen, {}},
                                        SchemaTable{"Verkaufspreise", verkaufspreise, verkaufspreiseIndexes},
                                        SchemaTable{"OffenePosten", offenePosten, offenePostenIndexes},
                                        SchemaTable{"Umrechnungen", umrechnungen, {}},
                                        SchemaTable{"Einstellungen", einstellungen, {}},
                                        SchemaTable{"Benutzer", benutzer, {}},
                                        SchemaTable{"Adressindex", adressindex, {}},
                                        SchemaTable{"Lieferanten", lieferanten, {}},
                                        SchemaTable{"Einkaufspreise", einkaufspreise, einkaufspreiseIndexes},
                                        SchemaTable{"Schemastand", schemastand, {}},
                                        SchemaTable{"Importlaeufe", importlaeufe, importlaeufeIndexes}};

} // namespace

std::span<const SchemaTable> componentTables() { return componentTableList; }

} // namespace qx::erp
