// The columns of the staging tables in the order in which the entry objects set them: a host's record set
// sees it.
#pragma once

#include "model/entry_records.h"
#include "store/field_order.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qx {

namespace detail {

template <std::size_t... Ns>
consteval auto joinNames(const std::array<std::string_view, Ns>&... lists) {
  std::array<std::string_view, (Ns + ...)> joined{};
  auto* at = joined.data();
  ((at = std::copy(lists.begin(), lists.end(), at)), ...);
  return joined;
}

/// Whether the order names every stored property of the table once and no other.
template <class Record, std::size_t fields, std::size_t names>
consteval bool namesWhatIsStored(const FieldTable<Record, fields>& table,
                                 const std::array<std::string_view, names>& order) {
  // NOLINTNEXTLINE(readability-use-anyofallof)
  for (const auto& field : table)
    if (std::ranges::count(order, field.name) != (field.stored() ? 1 : 0)) return false;
  return true;
}

} // namespace detail

/// What customers and orders begin with.
inline constexpr auto headerColumns = std::to_array<std::string_view>({"JobID",
                                                                       "JobType",
                                                                       "ImportType",
                                                                       "Status",
                                                                       "Eingangsdatum",
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
                                                                       "VS_Strasse",
                                                                       "VS_Land",
                                                                       "VS_PLZ",
                                                                       "VS_Ort",
                                                                       "RG_Bez1",
                                                                       "RG_Bez2",
                                                                       "RG_Bez3",
                                                                       "RG_Strasse",
                                                                       "RG_Land",
                                                                       "RG_PLZ",
                                                                       "RG_Ort"});

inline constexpr auto kundeColumns = detail::joinNames(
    headerColumns,
    std::to_array<std::string_view>({"Preisliste", "Preistyp", "IndFild1", "IndFild2", "IndFild3", "IndFild4",
                                     "KundeSeit", "KundeVerlorenAm", "GrundVerloren", "GrundVerlorenSchl"}));

inline constexpr auto auftragColumns = detail::joinNames(
    headerColumns,
    std::to_array<std::string_view>({"IndFild1", "IndFild2", "IndFild3", "Liefertermin", "KostID"}));

inline constexpr auto vertragColumns = std::to_array<std::string_view>(
    {"JobID",          "JobType",          "ImportType",  "Status",   "Eingangsdatum", "Kundennummer",
     "Vertragsnummer", "Artikelnummer",    "Vertragsart", "Zustand",  "Vertragstext",  "Vertragsdatum",
     "Vertragsbeginn", "Vertragsende",     "Intervall",   "Menge",    "Preis",         "Fehlertext",
     "Bemerkung",      "IndFild1",         "IndFild2",    "IndFild3", "IndFild4",      "VS_KdNr",
     "GekuendigtAm",   "GrundVerlorenSchl"});

inline constexpr auto auftragsPosColumns = std::to_array<std::string_view>(
    {"JobID", "ChildID", "JobType", "Positionsnummer", "Artikelnummer", "Menge", "Preis", "Artikellangtext",
     "Auslieferungsmenge", "Fakturiermenge", "Lieferbereit", "Fakturierbereit", "Mengeneinheit",
     "Liefertermin", "KostID", "Rabatt", "Preiseinheit"});

/// A column that no property stands behind.
inline constexpr auto lackedByHeaders = std::to_array<std::string_view>({"ImportType"});

inline constexpr auto kundeColumnOrder = fieldOrder(kundeFields, kundeColumns, lackedByHeaders);
inline constexpr auto auftragColumnOrder = fieldOrder(auftragFields, auftragColumns, lackedByHeaders);
inline constexpr auto vertragColumnOrder = fieldOrder(vertragFields, vertragColumns, lackedByHeaders);
inline constexpr auto auftragsPosColumnOrder = fieldOrder(auftragsPosFields, auftragsPosColumns);

static_assert(detail::namesWhatIsStored(kundeFields, kundeColumns));
static_assert(detail::namesWhatIsStored(auftragFields, auftragColumns));
static_assert(detail::namesWhatIsStored(vertragFields, vertragColumns));
static_assert(detail::namesWhatIsStored(auftragsPosFields, auftragsPosColumns));

} // namespace qx
