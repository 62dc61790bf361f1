#include "erp/schema_table.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

constexpr auto auftragskopf = list(
    key("Auftragsnummer", ColumnType::Integer), small("Buchungskreis"), code("Kundennummer"),
    code("Suchbegriff"), text("Bez1"), flag("KZDivers"), flag("KundeDivers"), code("Klassifizierung"),
    real("Auftragsrabatt"), code("Preisliste"), small("Preistyp"), code("FremdLiefNr"), integer("KostID"),
    small("Valutabehandlung"), small("Valutatage"), code("MwSt_KZ"), text("Ind_Text1"), text("Ind_Text2"),
    text("Ind_Text3"), text("Ind_Text4"), real("Ind_Zahl1"), real("Ind_Zahl2"), real("Ind_Zahl3"),
    real("Ind_Zahl4"), text("Ind_Memo1"), text("Ind_Memo2"), code("SprachKZ"), small("AnzAN"), small("AnzAB"),
    small("AnzLS"), small("AnzVE"), small("AnzRG"), small("AnzGS"), text("KopftextAN"), text("KopftextAB"),
    text("KopftextLS"), text("KopftextRG"), text("KopftextGS"), code("VS_KdNr"), code("VS_AdrNr"),
    text("VS_Bez1"), text("VS_Bez2"), text("VS_Bez3"), text("VS_Strasse"), code("VS_Land"), code("VS_PLZ"),
    text("VS_Ort"), code("RG_KdNr"), code("RG_AdrNr"), text("RG_Bez1"), text("RG_Bez2"), text("RG_Bez3"),
    text("RG_Strasse"), code("RG_Land"), code("RG_PLZ"), text("RG_Ort"), text("Telefon"), text("Telefax"),
    code("Hauptkonto"), code("Versandart"), code("Zahlungsart"), code("ZahlungsbedSchl"),
    code("VertreterNr1"), code("VertreterNr2"), code("VertreterNr3"), real("AnteilVertreter1"),
    real("AnteilVertreter2"), real("AnteilVertreter3"), code("Provisionsgruppe"), code("UstIdentNr"),
    text("Konto"), text("KontoNummer"), code("Bankleitzahl"), text("Kreditinstitut"), text("Bemerkung"),
    text("InterneBemerkung"), code("Währung"), real("Wechselkurs"), small("Kursbehandlung"),
    code("Auftragsart"), stamp("Auftragsdatum"), code("Zustand"), flag("Import"), text("Betreff"),
    text("IhreBestellung"), text("PrgVersion"), text("UnsereZeichen"), text("Sachbearbeiter"),
    money("Gesamtnetto"), money("GesamtMwSt"), money("Gesamtbrutto"), real("GesamtGewicht"), text("ÄndUser"));

// Lines have no key of their own: an article line and its text line share a position number.
constexpr auto auftragspos = list(
    integer("Auftragsnummer"), code("Zeilentyp"), code("Zustand"), flag("Import"), integer("Positionsnummer"),
    real("Menge"), real("Auslieferungsmenge"), real("Liefermenge"), real("Fakturiermenge"),
    code("Artikelnummer"), code("Erfassungsschema"), flag("KZDivers"), flag("ArtikelDivers"),
    code("Mengeneinheit"), text("Bezeichnung"), real("Gewicht"), real("PosGewicht"), code("Provisionsgruppe"),
    text("Ind_Text1"), text("Ind_Text2"), text("Ind_Text3"), text("Ind_Text4"), real("Ind_Zahl1"),
    real("Ind_Zahl2"), real("Ind_Zahl3"), real("Ind_Zahl4"), text("Ind_Memo1"), text("Ind_Memo2"),
    money("DurchschnittEK"), code("Hauptlager"), code("Lagernummer"), real("Rechenfeld1"),
    real("Rechenfeld2"), real("Rechenfeld3"), real("Rechenfeld4"), real("Rechenfeld5"),
    code("MengeneinheitEinkauf"), code("EKMengeneinheit"), money("Preis"), money("KalkPreis"),
    real("Preiseinheit"), real("Rabatt"), text("Preisfindung"), code("Rabattart"), code("KZRabattart"),
    code("KZRabatt1"), code("KZRabatt2"), code("KZRabatt3"), real("Rabatt1"), real("Rabatt2"),
    real("Rabatt3"), money("EKPreis"), real("EKPreiseinheit"), real("EKRabatt"), code("EKRabattart"),
    real("EKRabatt1"), real("EKRabatt2"), real("EKRabatt3"), flag("Lieferbereit"), flag("Fakturierbereit"),
    date("Liefertermin"), code("MwSt_KZ"), code("MwSt_Konto"), real("MwSt_Satz"), stamp("DZMwSt"),
    text("Artikellangtext"), text("Text"), text("Schriftart"), text("Schriftstil"), small("Schriftgröße"),
    text("WoDrucken"), flag("WertJN"), flag("Rabattfähig"), integer("KostID"), text("ÄndUser"));
constexpr std::array auftragsposIndexes{
    SchemaIndex{"Auftragspos_Auftrag", {"Auftragsnummer", "Positionsnummer"}}};

constexpr auto belegindex = list(code("Belegart"), integer("Belegnummer"), code("Herkunft"),
                                 code("Suchbegriff"), code("Kundennummer"), stamp("Datum"));
constexpr std::array belegindexIndexes{SchemaIndex{"Belegindex_Beleg", {"Belegart", "Belegnummer"}}};

constexpr auto nummernkreise = list(key("NSchl"), key("Buchungskreis", ColumnType::Small), flag("Aktiviert"),
                                    integer("aktuellerWert"), integer("UntererWert"), integer("ObererWert"));

constexpr auto artikelstamm =
    list(key("Artikelnummer"), code("Bez"), text("Bezeichnung"), code("Mengeneinheit"), code("MwSt_KZ"),
         code("Erfassungsschema"), flag("ArtikelGesperrt"), flag("KZDivers"), real("Gewicht"),
         code("Provisionsgruppe"), text("Ind_Text1"), text("Ind_Text2"), text("Ind_Text3"), text("Ind_Text4"),
         real("Ind_Zahl1"), real("Ind_Zahl2"), real("Ind_Zahl3"), real("Ind_Zahl4"), text("Ind_Memo1"),
         text("Ind_Memo2"), money("DurchschnittEK"), code("Hauptlager"), real("Rechenfeld1"),
         real("Rechenfeld2"), real("Rechenfeld3"), real("Rechenfeld4"), real("Rechenfeld5"),
         code("MengeneinheitEinkauf"), code("MEEinkauf"), code("Hauptlieferant"), code("Einkaufsgruppe"),
         small("PreisfindungEinkauf"), flag("WertJN"), flag("Rabattfähig"), money("Preis"),
         money("KalkPreis"), text("Artikellangtext"), stamp("DZMwSt"));

constexpr std::array artikelstammIndexes{SchemaIndex{"Artikelstamm_Bezeichnung", {"Bez", "Artikelnummer"}}};

constexpr auto artikellager =
    list(key("Artikelnummer"), key("Lagernummer"), real("Lagerbestand"), flag("MitBestand"));
constexpr auto mengeneinheitenAltern = list(key("Alternativ"), code("Mengeneinheit"));
constexpr auto mengeneinheiten = list(key("Mengeneinheit"), text("Langtext"), small("AnzNK"));

constexpr auto kostenzuordnung =
    list(key("KostID", ColumnType::Integer), code("Kostenstelle"), code("Kostentraeger"));
constexpr std::array kostenzuordnungIndexes{
    SchemaIndex{"Kostenzuordnung_Paar", {"Kostenstelle", "Kostentraeger"}}};

constexpr auto steuerschlüsselzuordnung =
    list(key("MwStKZKunde"), key("MwStKZArtikel"), small("Steuerschlüssel"), small("SteuerschlüsselNeu"));
constexpr auto steuerschlüssel = list(key("Steuerschlüssel", ColumnType::Small), real("MwSt_Satz"));

constexpr std::array orderTableList{SchemaTable{"Auftragskopf", auftragskopf, {}},
                                    SchemaTable{"Auftragspos", auftragspos, auftragsposIndexes},
                                    SchemaTable{"Belegindex", belegindex, belegindexIndexes},
                                    SchemaTable{"Nummernkreise", nummernkreise, {}},
                                    SchemaTable{"Artikelstamm", artikelstamm, artikelstammIndexes},
                                    SchemaTable{"Artikellager", artikellager, {}},
                                    SchemaTable{"MengeneinheitenAltern", mengeneinheitenAltern, {}},
                                    SchemaTable{"Mengeneinheiten", mengeneinheiten, {}},
                                    SchemaTable{"Kostenzuordnung", kostenzuordnung, kostenzuordnungIndexes},
                                    SchemaTable{"Steuerschlüsselzuordnung", steuerschlüsselzuordnung, {}},
                                    SchemaTable{"Steuerschlüssel", steuerschlüssel, {}}};

} // namespace

std::span<const SchemaTable> orderTables() { return orderTableList; }

} // namespace qx::erp
