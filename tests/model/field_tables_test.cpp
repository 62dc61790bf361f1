// The field tables against the interfaces of their classes, property by property.
#include "model/entry_records.h"
#include "model/import_job.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace qx {
namespace {

/// The properties in order. "/16", "/32", "/d", "/b" and "/date" say what one holds if it is no text, "-"
/// that it is not stored, ">" under which other name it is, and brackets that the interface does not list it.
template <class Table>
std::string described(const Table& table) {
  std::string text;
  for (const auto& field : table) {
    std::string one(field.name);
    switch (field.kind) {
    case FieldKind::Text:
      break;
    case FieldKind::Date:
      one += "/date";
      break;
    case FieldKind::Int16:
      one += "/16";
      break;
    case FieldKind::Int32:
      one += "/32";
      break;
    case FieldKind::Double:
      one += "/d";
      break;
    case FieldKind::Boolean:
      one += "/b";
      break;
    }
    if (!field.stored())
      one += "-";
    else if (field.column != field.name)
      one += ">" + std::string(field.column);
    text += (field.documented ? one : "[" + one + "]") + "\n";
  }
  return text;
}

/// One word a line.
std::string lines(const std::string& words) {
  std::istringstream in(words);
  std::string text;
  for (std::string word; in >> word;) text += word + "\n";
  return text;
}

const std::string toRemark = R"(JobID JobType/16 Status/16 Eingagsart/16- Eingangsdatum/date Kundennummer
  Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail Kundengruppe
  Vertreter1 Vertreter2 Vertreter3 Zahlungsart Konto BLZ Kreditinstitut Bemerkung )";
const std::string fromContractNumber =
    R"(Vertragsnummer Zahlungsweise Währung WährungEingabe Fehlertext Betreff
  Versandart ZahlungsbedSchl Provisionsgruppe UstIdentNr IndFild1 IndFild2 IndFild3 )";
const std::string addresses = R"(VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto
  VS_Bez1 VS_Bez2 VS_Bez3 VS_Strasse>VS_Straße VS_Land VS_PLZ VS_Ort
  RG_Bez1 RG_Bez2 RG_Bez3 RG_Strasse>RG_Straße RG_Land RG_PLZ RG_Ort )";

TEST(FieldTables, ListThePropertiesOfTheEntryObjectsInOrder) {
  EXPECT_EQ(described(kundeFields), lines(toRemark + fromContractNumber + "IndFild4 " + addresses + R"(
    Preisliste Preistyp/16 KundeSeit/date KundeVerlorenAm/date GrundVerloren GrundVerlorenSchl)"));
  EXPECT_EQ(described(auftragFields), lines(toRemark + "NeukundeJN/b- " + fromContractNumber + addresses +
                                            "Liefertermin/date KostID/32"));
  EXPECT_EQ(described(vertragFields), lines(R"(JobID JobType/16 Status/16 Eingagsart/16- Eingangsdatum/date
    Kundennummer Vertragsnummer Artikelnummer Vertragsart Zustand Vertragstext Vertragsdatum/date
    Vertragsbeginn/date Vertragsende/date Kündigungsgrund- Intervall/16 Menge/d Preis/d Fehlertext Bemerkung
    IndFild1 [IndFild2] [IndFild3] [IndFild4] Wartungspreis- PreisabweichungGrund/16-
    PreisabweichungGenehmigender- PreisabweichungDatum/date- PreisabweichungBemerkung- VS_KdNr
    GekuendigtAm/date GrundVerlorenSchl)"));
  EXPECT_EQ(described(auftragsPosFields), lines(R"(JobID ChildID JobType/16 Positionsnummer/32 Artikelnummer
    Menge/d Wartungspreis/d- Preis/d Artikellangtext Auslieferungsmenge/d Fakturiermenge/d Lieferbereit/b
    Fakturierbereit/b Mengeneinheit Rabatt/d Preiseinheit/d Liefertermin/date KostID/32)"));
}

TEST(FieldTables, ListThePropertiesOfTheOlderJobRecordsInOrder) {
  EXPECT_EQ(described(importJobFields),
            lines(R"(JobID JobType/16 Status/16 Eingagsart/16-
    Eingagsdatum/date>Eingangsdatum Kundennummer AdresseAendernJN/b Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ
    Ort Telefon Telefax EMail Kundengruppe Vertreter1 Vertreter2 Vertreter3 ZahlungsartAendernJN/b Zahlungsart
    Konto BLZ Kreditinstitut Bemerkung NeukundeJN/b- Vertragsnummer Vertragsdatum/date Vertragsbeginn/date
    Zahlungsweise Währung WährungEingabe Fehlertext Betreff Versandart ZahlungsbedSchl Provisionsgruppe
    UstIdentNr IndFild1 )" +
                  addresses + "Preisliste Kündigungsgrund Intervall/16 Zustand VertrGegenstandsNr-"));
  EXPECT_EQ(described(importJobSubItemFields), lines(R"(JobID ChildID JobType/16 Positionsnummer/32
    Artikelnummer Menge/d Vertragsart ChkAbwBetrag/b- Wartungspreis/d- Preis/d Vertragsende/date
    Artikellangtext Auslieferungsmenge/d Fakturiermenge/d Lieferbereit/b Fakturierbereit/b Mengeneinheit
    Vertragstext)"));
}

/// The names of properties that lie before the one listed ahead of them. A member under a name not its own
/// breaks the order at its place or at the next.
template <class Record, class Table>
std::string outOfOrder(const Table& table) {
  const Record record;
  std::string names;
  const void* before = nullptr;
  for (const auto& field : table) {
    const void* here = field.visit(record, [](const auto& member) -> const void* { return &member; });
    if (std::less<>()(here, before) || here == before) names += std::string(field.name) + " ";
    before = here;
  }
  return names;
}

TEST(FieldTables, ReachTheMembersInTheOrderInWhichTheyAreDeclared) {
  // The fields of both kinds come first in the record, so what one kind has in their midst lies behind.
  EXPECT_EQ(outOfOrder<KundeFields>(kundeFields), "VS_KdNr ");
  EXPECT_EQ(outOfOrder<AuftragFields>(auftragFields), "Vertragsnummer ");
  EXPECT_EQ(outOfOrder<VertragFields>(vertragFields), "");
  EXPECT_EQ(outOfOrder<AuftragsPosFields>(auftragsPosFields), "");
  EXPECT_EQ(outOfOrder<ImportJob>(importJobFields), "");
  EXPECT_EQ(outOfOrder<ImportJobSubItem>(importJobSubItemFields), "");
}

} // namespace
} // namespace qx
