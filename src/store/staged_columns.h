// The columns of the staging tables in the order in which the entry objects set them; a host's record set can
// observe it.
#pragma once

#include "model/entry_records.h"
#include "store/field_order.h"
#include "store/version1_rows.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qx {

namespace detail {

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

/// The first columns of customers and orders.
inline constexpr auto headerColumns = joined(
    words<"JobID JobType ImportType Status Eingangsdatum Kundennummer">(), detail::nameToReps,
    detail::paymentToContract, words<"Zahlungsweise">(), detail::currencies, detail::reasonsToTaxId,
    words<"VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto VS_Bez1 VS_Bez2 VS_Bez3 VS_Strasse VS_Land VS_PLZ "
          "VS_Ort RG_Bez1 RG_Bez2 RG_Bez3 RG_Strasse RG_Land RG_PLZ RG_Ort">());

inline constexpr auto kundeColumns = joined(
    headerColumns,
    words<"Preisliste Preistyp IndFild1 IndFild2 IndFild3 IndFild4 KundeSeit KundeVerlorenAm GrundVerloren "
          "GrundVerlorenSchl">());

inline constexpr auto auftragColumns =
    joined(headerColumns, words<"IndFild1 IndFild2 IndFild3 Liefertermin KostID">());

inline constexpr auto vertragColumns = words<
    "JobID JobType ImportType Status Eingangsdatum Kundennummer Vertragsnummer Artikelnummer "
    "Vertragsart Zustand Vertragstext Vertragsdatum Vertragsbeginn Vertragsende Intervall Menge Preis "
    "Fehlertext Bemerkung IndFild1 IndFild2 IndFild3 IndFild4 VS_KdNr GekuendigtAm GrundVerlorenSchl">();

inline constexpr auto auftragsPosColumns =
    words<"JobID ChildID JobType Positionsnummer Artikelnummer Menge Preis Artikellangtext "
          "Auslieferungsmenge Fakturiermenge Lieferbereit Fakturierbereit Mengeneinheit Liefertermin KostID "
          "Rabatt Preiseinheit">();

/// A column without a property.
inline constexpr auto lackedByHeaders = words<"ImportType">();

inline constexpr auto kundeColumnOrder = fieldOrder(kundeFields, kundeColumns, lackedByHeaders);
inline constexpr auto auftragColumnOrder = fieldOrder(auftragFields, auftragColumns, lackedByHeaders);
inline constexpr auto vertragColumnOrder = fieldOrder(vertragFields, vertragColumns, lackedByHeaders);
inline constexpr auto auftragsPosColumnOrder = fieldOrder(auftragsPosFields, auftragsPosColumns);

static_assert(detail::namesWhatIsStored(kundeFields, kundeColumns));
static_assert(detail::namesWhatIsStored(auftragFields, auftragColumns));
static_assert(detail::namesWhatIsStored(vertragFields, vertragColumns));
static_assert(detail::namesWhatIsStored(auftragsPosFields, auftragsPosColumns));

} // namespace qx
