#include "erp/schema_lists.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

constexpr std::array protokolle{key("ID"), text("Titel"), code("Art"), code("Liste"), stamp("Datum")};
constexpr std::array protokollpositionen{key("ID"),     key("Zeile", ColumnType::Integer),
                                         text("Text0"), text("Text1"),
                                         text("Text2"), text("Text3"),
                                         text("Text4"), text("Text5"),
                                         text("Text6"), text("Text7"),
                                         text("Text8"), text("Memo0")};

/// A code whose empty text means all.
constexpr SchemaColumn orAny(SchemaColumn column) { return withDefault(column, ColumnDefault::EmptyText); }

constexpr std::array verkaufspreise{orAny(code("Preisliste")),
                                    orAny(code("Kundennummer")),
                                    code("Artikelnummer"),
                                    code("Mengeneinheit"),
                                    real("Menge"),
                                    stamp("GueltigAb"),
                                    money("Preis"),
                                    money("KalkPreis"),
                                    real("Preiseinheit"),
                                    code("KZRabattart"),
                                    code("KZRabatt1"),
                                    code("KZRabatt2"),
                                    code("KZRabatt3"),
                                    real("Rabatt1"),
                                    real("Rabatt2"),
                                    real("Rabatt3")};
constexpr std::array verkaufspreiseIndexes{
    SchemaIndex{"Verkaufspreise_Artikel", {"Artikelnummer", "Kundennummer", "Preisliste"}}};

constexpr std::array einkaufspreise{
    code("Lieferantennummer"), code("Artikelnummer"), code("Mengeneinheit"),  real("Menge"),
    stamp("GueltigAb"),        money("EKPreis"),      real("EKPreiseinheit"), code("EKRabattart"),
    real("EKRabatt1"),         real("EKRabatt2"),     real("EKRabatt3")};
constexpr std::array einkaufspreiseIndexes{
    SchemaIndex{"Einkaufspreise_Artikel", {"Artikelnummer", "Lieferantennummer"}}};

constexpr std::array offenePosten{code("Kundennummer"), code("Belegnummer"), money("Betrag"),
                                  code("Währung")};
constexpr std::array offenePostenIndexes{SchemaIndex{"OffenePosten_Kunde", {"Kundennummer"}}};

constexpr std::array umrechnungen{orAny(key("Artikelnummer")), key("Mengeneinheit"), key("Basiseinheit"),
                                  real("Faktor")};
constexpr std::array einstellungen{key("Section"), key("Key"), text("Value")};
constexpr std::array benutzer{key("UserName"), code("PersonalNr"),
                              withDefault(small("Buchungskreis"), ColumnDefault::One)};
constexpr std::array adressindex{key("Kundennummer"), key("Art", ColumnType::Small), code("Suchtext")};
constexpr std::array lieferanten{key("Lieferantennummer"), code("Bez1")};
constexpr std::array schemastand{integer("Version")};

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
                                        SchemaTable{"Schemastand", schemastand, {}}};

} // namespace

std::span<const SchemaTable> componentTables() { return componentTableList; }

} // namespace qx::erp
