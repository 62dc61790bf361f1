// The field tables against the columns that staging tables have.
#include "model/entry_records.h"
#include "model/import_job.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

namespace qx {
namespace {

using Columns = std::map<std::string_view, FieldKind>;

constexpr auto text = FieldKind::Text;
constexpr auto date = FieldKind::Date;
constexpr auto int16 = FieldKind::Int16;
constexpr auto int32 = FieldKind::Int32;
constexpr auto number = FieldKind::Double;
constexpr auto boolean = FieldKind::Boolean;

void addTexts(Columns& columns, std::initializer_list<std::string_view> names) {
  for (const auto name : names) columns[name] = text;
}

/// The columns of `ImportKopf` that jobs fill, and what each holds.
Columns headerColumns() {
  Columns columns{{"JobType", int16},
                  {"ImportType", int16},
                  {"Status", int16},
                  {"Eingangsdatum", date},
                  {"AdresseAendernJN", boolean},
                  {"ZahlungsartAendernJN", boolean},
                  {"Vertragsdatum", date},
                  {"Vertragsbeginn", date},
                  {"Vertragsende", date},
                  {"Preistyp", int16},
                  {"KundeSeit", date},
                  {"KundeVerlorenAm", date},
                  {"Intervall", int16},
                  {"Menge", number},
                  {"Preis", number},
                  {"GekuendigtAm", date},
                  {"Liefertermin", date},
                  {"KostID", int32}};
  addTexts(columns, {"JobID",
                     "Kundennummer",
                     "Suchbegriff",
                     "Bez1",
                     "Bez2",
                     "Bez3",
                     "Strasse",
                     "Land",
                     "PLZ",
                     "Ort",
                     "Telefon",
                     "Telefax",
                     "EMail",
                     "Kundengruppe",
                     "Vertreter1",
                     "Vertreter2",
                     "Vertreter3",
                     "Zahlungsart",
                     "Konto",
                     "BLZ",
                     "Kreditinstitut",
                     "Bemerkung",
                     "Vertragsnummer",
                     "Zahlungsweise",
                     "Währung",
                     "WährungEingabe",
                     "Fehlertext",
                     "Betreff",
                     "Versandart",
                     "ZahlungsbedSchl",
                     "Provisionsgruppe",
                     "UstIdentNr",
                     "VS_KdNr",
                     "VS_AdrNr",
                     "RG_KdNr",
                     "RG_AdrNr",
                     "Hauptkonto",
                     "VS_Bez1",
                     "VS_Bez2",
                     "VS_Bez3",
                     "VS_Straße",
                     "VS_Land",
                     "VS_PLZ",
                     "VS_Ort",
                     "RG_Bez1",
                     "RG_Bez2",
                     "RG_Bez3",
                     "RG_Straße",
                     "RG_Land",
                     "RG_PLZ",
                     "RG_Ort",
                     "Preisliste",
                     "IndFild1",
                     "IndFild2",
                     "IndFild3",
                     "IndFild4",
                     "GrundVerloren",
                     "GrundVerlorenSchl",
                     "Artikelnummer",
                     "Vertragsart",
                     "Zustand",
                     "Vertragstext",
                     "Kündigungsgrund"});
  return columns;
}

Columns positionColumns() {
  Columns columns{{"JobType", int16},
                  {"Positionsnummer", int32},
                  {"Menge", number},
                  {"Preis", number},
                  {"Auslieferungsmenge", number},
                  {"Fakturiermenge", number},
                  {"Lieferbereit", boolean},
                  {"Fakturierbereit", boolean},
                  {"Liefertermin", date},
                  {"Vertragsende", date},
                  {"KostID", int32},
                  {"Rabatt", number},
                  {"Preiseinheit", number}};
  addTexts(columns, {"JobID", "ChildID", "Vertragsart", "Artikelnummer", "Artikellangtext", "Mengeneinheit",
                     "Vertragstext"});
  return columns;
}

/// What is wrong with a table; empty when nothing is.
template <class Table>
std::string faults(const Table& table, const Columns& columns) {
  std::string found;
  std::set<std::string_view> names;
  for (const auto& field : table) {
    if (!names.insert(field.name).second) found.append(field.name).append(" is there twice\n");
    if (!field.stored()) continue;
    const auto column = columns.find(field.column);
    if (column == columns.end())
      found.append(field.column).append(" is no column\n");
    else if (column->second != field.kind)
      found.append(field.name).append(" is of another kind than its column\n");
  }
  return found;
}

template <class Table>
std::ptrdiff_t documented(const Table& table) {
  return std::ranges::count_if(table, [](const auto& field) { return field.documented; });
}

template <class Table>
std::set<std::string_view> notStored(const Table& table) {
  std::set<std::string_view> names;
  for (const auto& field : table)
    if (!field.stored()) names.insert(field.name);
  return names;
}

using Names = std::set<std::string_view>;

TEST(FieldTables, MatchTheStagingColumns) {
  EXPECT_EQ(faults(kundeFields, headerColumns()), "");
  EXPECT_EQ(faults(auftragFields, headerColumns()), "");
  EXPECT_EQ(faults(vertragFields, headerColumns()), "");
  EXPECT_EQ(faults(auftragsPosFields, positionColumns()), "");
  EXPECT_EQ(faults(importJobFields, headerColumns()), "");
  EXPECT_EQ(faults(importJobSubItemFields, positionColumns()), "");
}

TEST(FieldTables, HaveEveryDocumentedProperty) {
  EXPECT_EQ(documented(kundeFields), 65);
  EXPECT_EQ(documented(auftragFields), 61);
  EXPECT_EQ(documented(vertragFields), 29);
  EXPECT_EQ(documented(auftragsPosFields), 18);
  EXPECT_EQ(documented(importJobFields), 66);
  EXPECT_EQ(documented(importJobSubItemFields), 18);
}

TEST(FieldTables, LeaveOutWhatIsNotStored) {
  EXPECT_EQ(notStored(kundeFields), (Names{"Eingagsart"}));
  EXPECT_EQ(notStored(auftragFields), (Names{"Eingagsart", "NeukundeJN"}));
  EXPECT_EQ(notStored(vertragFields),
            (Names{"Eingagsart", "Kündigungsgrund", "Wartungspreis", "PreisabweichungGrund",
                   "PreisabweichungGenehmigender", "PreisabweichungDatum", "PreisabweichungBemerkung"}));
  EXPECT_EQ(notStored(auftragsPosFields), (Names{"Wartungspreis"}));
  EXPECT_EQ(notStored(importJobFields), (Names{"Eingagsart", "NeukundeJN", "VertrGegenstandsNr"}));
  EXPECT_EQ(notStored(importJobSubItemFields), (Names{"ChkAbwBetrag", "Wartungspreis"}));
}

TEST(FieldTables, ReachThePropertyOfTheirName) {
  KundeFields customer;
  customer.VS_Strasse = "Hafenweg 1";
  customer.Preistyp = 7;
  const auto& street = kundeFields[fieldIndex(kundeFields, "VS_Strasse")];
  EXPECT_EQ(street.column, "VS_Straße");
  street.visit(customer, [](auto& member) {
    if constexpr (std::is_same_v<decltype(member), std::string&>) member += "a";
  });
  EXPECT_EQ(customer.VS_Strasse, "Hafenweg 1a");
  const double read =
      kundeFields[fieldIndex(kundeFields, "Preistyp")].visit(customer, [](const auto& member) {
        if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(member)>>) return double(member);
        return -1.0;
      });
  EXPECT_EQ(read, 7);
  EXPECT_EQ(fieldIndex(kundeFields, "KostID"), kundeFields.size()) << "a customer has no cost assignment";
}

} // namespace
} // namespace qx
