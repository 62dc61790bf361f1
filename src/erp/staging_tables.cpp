#include "erp/schema_table.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

constexpr auto importKopf = list(
    key("JobID"), small("JobType"), small("ImportType"), small("Status"), date("Eingangsdatum"),
    code("Kundennummer"), flag("AdresseAendernJN"), flag("ZahlungsartAendernJN"), code("Suchbegriff"),
    // The name and the subject are sort keys of the job list and sort like the code columns.
    code("Bez1"), text("Bez2"), text("Bez3"), text("Strasse"), code("Land"), code("PLZ"), text("Ort"),
    text("Telefon"), text("Telefax"), text("EMail"), code("Kundengruppe"), code("Vertreter1"),
    code("Vertreter2"), code("Vertreter3"), code("Zahlungsart"), text("Konto"), code("BLZ"),
    text("Kreditinstitut"), text("Bemerkung"), flag("NeukundeJN"), code("Vertragsnummer"),
    date("Vertragsdatum"), date("Vertragsbeginn"), date("Vertragsende"), code("Zahlungsweise"),
    code("Währung"), code("WährungEingabe"), text("Fehlertext"), code("Betreff"), code("Versandart"),
    code("ZahlungsbedSchl"), code("Provisionsgruppe"), code("UstIdentNr"), code("VS_KdNr"), code("VS_AdrNr"),
    code("RG_KdNr"), code("RG_AdrNr"), code("Hauptkonto"), text("VS_Bez1"), text("VS_Bez2"), text("VS_Bez3"),
    text("VS_Straße"), code("VS_Land"), code("VS_PLZ"), text("VS_Ort"), text("RG_Bez1"), text("RG_Bez2"),
    text("RG_Bez3"), text("RG_Straße"), code("RG_Land"), code("RG_PLZ"), text("RG_Ort"), code("Preisliste"),
    small("Preistyp"), text("IndFild1"), text("IndFild2"), text("IndFild3"), text("IndFild4"),
    date("KundeSeit"), date("KundeVerlorenAm"), text("GrundVerloren"), code("GrundVerlorenSchl"),
    code("Artikelnummer"), code("Vertragsart"), code("Zustand"), text("Vertragstext"), small("Intervall"),
    real("Menge"), real("Preis"), date("GekuendigtAm"), date("Liefertermin"), integer("KostID"),
    small("ProcessWarning"), text("KontoNummer"), code("Bankleitzahl"), text("KundengruppenShop"),
    small("AendStatShop"), text("Info"), text("Kündigungsgrund"), small("PreisabweichungGrund"),
    text("PreisabweichungGenehmigender"), date("PreisabweichungDatum"), text("PreisabweichungBemerkung"),
    flag("Fehler"), flag("Erledigt"), flag("Neukunde"));

// One index per sort order of the job list, each led by the job code; the sections of a run and the searches
// for a customer's jobs use them as well. Each further index slows staging down.
constexpr std::array importKopfIndexes{
    SchemaIndex{"ImportKopf_Art", {"JobType"}},
    SchemaIndex{"ImportKopf_Kunde", {"JobType", "Kundennummer"}},
    SchemaIndex{"ImportKopf_Datum", {"JobType", "Eingangsdatum"}, IndexKind::ByDate},
    SchemaIndex{"ImportKopf_Name", {"JobType", "Bez1"}},
    SchemaIndex{"ImportKopf_Betreff", {"JobType", "Betreff"}},
    SchemaIndex{"ImportKopf_Freigabe", {"ProcessWarning"}, IndexKind::Released}};

constexpr auto importPos =
    list(code("JobID"), key("ChildID"), small("JobType"), code("Positionsnummer"), code("Vertragsart"),
         code("Artikelnummer"), real("Menge"), real("Preis"), text("Artikellangtext"),
         real("Auslieferungsmenge"), real("Fakturiermenge"), flag("Lieferbereit"), flag("Fakturierbereit"),
         code("Mengeneinheit"), date("Liefertermin"), integer("KostID"), real("Rabatt"), real("Preiseinheit"),
         date("Vertragsende"), text("Vertragstext"));

constexpr std::array importPosIndexes{SchemaIndex{"ImportPos_Job", {"JobID"}}};

constexpr auto lockControl =
    list(key("Dateiname"), key("Satz"), text("StationID"), text("SessionID"), text("Benutzer"));

constexpr std::array stagingTableList{SchemaTable{"ImportKopf", importKopf, importKopfIndexes},
                                      SchemaTable{"ImportPos", importPos, importPosIndexes},
                                      SchemaTable{"LockControl", lockControl, {}}};

} // namespace

std::span<const SchemaTable> stagingTables() { return stagingTableList; }

} // namespace qx::erp
