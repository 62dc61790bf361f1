#include "erp/schema_table.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

// Here and in the tables below, names and descriptions that lookups search compare like codes.
constexpr auto kundenstamm =
    list(key("Kundennummer"), text("ÄndUser"), stamp("ÄndDatum"), code("Suchbegriff"), code("Bez1"),
         text("Bez2"), text("Bez3"), text("Strasse"), code("Land"), code("PLZ"), text("Ort"), text("Telefon"),
         text("Telefax"), text("EMail"), code("Versandart"), code("Kundengruppe"), code("VertreterNr1"),
         code("VertreterNr2"), code("VertreterNr3"), real("AnteilVertreter1"), real("AnteilVertreter2"),
         real("AnteilVertreter3"), code("Zahlungsart"), code("ZahlungsbedSchl"), text("Konto"),
         text("KontoNummer"), code("Bankleitzahl"), text("Kreditinstitut"), text("KundengruppenShop"),
         small("AendStatShop"), code("VS_KdNr"), code("VS_AdrNr"), code("RG_KdNr"), code("RG_AdrNr"),
         code("Hauptkonto"), code("Preisliste"), withDefault(small("Preistyp"), ColumnDefault::Zero),
         date("KundeSeit"), date("KundeVerlorenAm"), text("GrundVerloren"), code("GrundVerlorenSchl"),
         code("UstIdentNr"), code("Provisionsgruppe"), code("Klassifizierung"), real("Auftragsrabatt"),
         code("FremdLiefNr"), integer("KostID"), small("Valutabehandlung"), small("Valutatage"),
         withDefault(code("MwSt_KZ"), ColumnDefault::DomesticTaxMark), text("Ind_Text1"), text("Ind_Text2"),
         text("Ind_Text3"), text("Ind_Text4"), real("Ind_Zahl1"), real("Ind_Zahl2"), real("Ind_Zahl3"),
         real("Ind_Zahl4"), text("Ind_Memo1"), text("Ind_Memo2"), code("SprachKZ"), small("AnzAN"),
         small("AnzAB"), small("AnzLS"), small("AnzVE"), small("AnzRG"), small("AnzGS"), text("KopftextAN"),
         text("KopftextAB"), text("KopftextLS"), text("KopftextRG"), text("KopftextGS"), flag("KZDivers"),
         flag("Liefersperre"), money("Kreditlimit1"), money("Kreditlimit2"), code("Währung"));
constexpr std::array kundenstammIndexes{
    SchemaIndex{"Kundenstamm_Suchbegriff", {"Suchbegriff", "Kundennummer"}},
    SchemaIndex{"Kundenstamm_Name", {"Bez1", "Kundennummer"}}};

// Addresses of no customer lack a customer number, so the pair cannot be a primary key.
constexpr auto adressenstamm = list(code("Kundennummer"), code("Adressnummer"), code("Bez1"), text("Bez2"),
                                    text("Bez3"), text("Strasse"), code("Land"), code("PLZ"), code("Ort"),
                                    text("Telefon"), text("Telefax"), text("EMail"));
constexpr std::array adressenstammIndexes{
    SchemaIndex{"Adressenstamm_Adresse", {"Kundennummer", "Adressnummer"}, IndexKind::Unique}};

constexpr auto kundengruppen = list(key("Kundengruppe"), text("Langtext"));
constexpr auto vertreter = list(key("VertreterNr"), code("Suchbegriff"), text("Bez1"), text("Bez2"),
                                text("Ort"), real("AnteilVertreter"));
constexpr auto zahlungsarten = list(key("Zahlungsart"), text("Kurztext"));
constexpr auto kreditinstitute = list(key("Bankleitzahl"), code("Kreditinstitut"));
constexpr auto währungen =
    list(key("Währung"), text("Langtext"), real("Wechselkurs"), small("Kursbehandlung"));
constexpr auto versandtexte = list(key("Versandart"), text("Kurztext"));
constexpr auto zahlungsbedingungen =
    list(key("ZahlbedSchl"), small("SkontoTage1"), small("SkontoTage2"), small("SkontoTage3"),
         real("SkontoProzent1"), real("SkontoProzent2"), real("SkontoProzent3"), small("NettoTage"));
constexpr auto preislistenKopf = list(key("Preisliste"), text("Langtext"));

constexpr auto verträge =
    list(key("Kundennummer"), key("Vertragsnummer"), date("Vertragsdatum"), date("Vertragsbeginn"),
         date("Vertragsende"), code("Zahlungsweise"), small("Intervall"), small("IntervallErstmals"),
         small("IntervallVerlängerung"), text("Bemerkung"), text("Kündigungsgrund"), code("Zustand"),
         text("ÄndUser"), stamp("ÄndDatum"), key("Vertragsart"), key("VertrGegenstandsNr"), real("Anzahl"),
         money("Betrag"), text("PreisabweichungGrund"), text("PreisabweichungGenehmigender"),
         text("PreisabweichungDatum"), text("PreisabweichungBemerkung"), code("VS_KdNr"),
         date("GekuendigtAm"), code("GrundVerlorenSchl"), text("Vertragstext"));

constexpr auto vertragsarten = list(key("Vertragsart"), text("Kurztext"));
constexpr auto vertragsGegenständePos = list(key("VertrGegenstandsNr"), key("Vertragsart"));
constexpr auto vertragsgegenstände = list(key("VertrGegenstandsNr"), code("Bez"));

constexpr auto textbausteine =
    list(key("Textart"), key("TextNummer"), key("ZusatztextNummer"), key("SprachKZ"), code("Kurztext"),
         text("Langtext"), text("WoDrucken"), text("Schriftart"), small("Schriftgröße"), text("Schriftstil"));
constexpr auto personalstamm = list(key("PersonalNr"), text("Kurzzeichen"), text("Anrede"), text("Titel"),
                                    text("Vorname"), text("Nachname"));

constexpr std::array customerTableList{SchemaTable{"Kundenstamm", kundenstamm, kundenstammIndexes},
                                       SchemaTable{"Adressenstamm", adressenstamm, adressenstammIndexes},
                                       SchemaTable{"Kundengruppen", kundengruppen, {}},
                                       SchemaTable{"Vertreter", vertreter, {}},
                                       SchemaTable{"Zahlungsarten", zahlungsarten, {}},
                                       SchemaTable{"Kreditinstitute", kreditinstitute, {}},
                                       SchemaTable{"Währungen", währungen, {}},
                                       SchemaTable{"Versandtexte", versandtexte, {}},
                                       SchemaTable{"Zahlungsbedingungen", zahlungsbedingungen, {}},
                                       SchemaTable{"PreislistenKopf", preislistenKopf, {}},
                                       SchemaTable{"Verträge", verträge, {}},
                                       SchemaTable{"Vertragsarten", vertragsarten, {}},
                                       SchemaTable{"VertragsGegenständePos", vertragsGegenständePos, {}},
                                       SchemaTable{"Vertragsgegenstände", vertragsgegenstände, {}},
                                       SchemaTable{"Textbausteine", textbausteine, {}},
                                       SchemaTable{"Personalstamm", personalstamm, {}}};

} // namespace

std::span<const SchemaTable> customerTables() { return customerTableList; }

} // namespace qx::erp
