// Which job codes occur in job files, and the fields of their lines and of the entry objects' text lines.
#pragma once

#include "model/entry_records.h"
#include "store/field_order.h"
#include "store/version1_rows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qx {

/// A customer in a job file.
inline constexpr auto customerLine =
    words<"JobType JobID Bemerkung Betreff Bez1 Bez2 Bez3 BLZ Eingangsdatum EMail Fehlertext Hauptkonto "
          "Konto Kreditinstitut Kundengruppe Kundennummer Land Ort PLZ Provisionsgruppe RG_AdrNr RG_Bez1 "
          "RG_Bez2 RG_Bez3 RG_KdNr RG_Land RG_Ort RG_PLZ RG_Strasse Status Strasse Suchbegriff Telefax "
          "Telefon UstIdentNr Versandart Vertreter1 Vertreter2 Vertreter3 VS_AdrNr VS_Bez1 VS_Bez2 VS_Bez3 "
          "VS_KdNr VS_Land VS_Ort VS_PLZ VS_Strasse Währung WährungEingabe Zahlungsart ZahlungsbedSchl "
          "Zahlungsweise ImportType IndFild1 IndFild2 IndFild3">();

/// A contract in a job file and as a text line of its own.
inline constexpr auto contractLine =
    words<"JobType JobID Bemerkung Eingangsdatum Fehlertext Intervall Kundennummer Kündigungsgrund Menge "
          "Preis Status Vertragsart Vertragsbeginn Vertragsdatum Vertragsende Vertragsnummer Vertragstext "
          "Artikelnummer Zustand PreisabweichungGrund PreisabweichungGenehmigender PreisabweichungDatum "
          "PreisabweichungBemerkung">();

namespace detail {
inline constexpr auto lineToBank = words<"JobType JobID Bemerkung Betreff Bez1 Bez2 Bez3 BLZ">();
inline constexpr auto lineFromDate =
    words<"Eingangsdatum EMail Fehlertext Hauptkonto Konto Kreditinstitut Kundengruppe Kundennummer Land "
          "Ort PLZ Preisliste Provisionsgruppe RG_AdrNr RG_Bez1 RG_Bez2 RG_Bez3 RG_KdNr RG_Land RG_Ort "
          "RG_PLZ RG_Strasse Status Strasse Suchbegriff Telefax Telefon UstIdentNr Versandart "
          "Vertragsnummer Vertreter1 Vertreter2 Vertreter3 VS_AdrNr VS_Bez1 VS_Bez2 VS_Bez3 VS_KdNr VS_Land "
          "VS_Ort VS_PLZ VS_Strasse Währung WährungEingabe Zahlungsart ZahlungsbedSchl Zahlungsweise "
          "Preistyp IndFild1 IndFild2 IndFild3 IndFild4">();
} // namespace detail

/// An order header in a job file.
inline constexpr auto orderLine = joined(detail::lineToBank, detail::lineFromDate);

/// An order position in a job file.
inline constexpr auto positionLine =
    words<"JobType JobID ChildID Artikellangtext Artikelnummer Auslieferungsmenge Fakturierbereit "
          "Fakturiermenge Lieferbereit Menge Mengeneinheit Positionsnummer Preis Rabatt Preiseinheit">();

/// A customer as a text line of its own; the field after `BLZ` is always empty.
inline constexpr auto customerTextLine =
    joined(detail::lineToBank, std::array{std::string_view()}, detail::lineFromDate,
           words<"KundeSeit KundeVerlorenAm GrundVerloren GrundVerlorenSchl">());

/// What follows the job-file fields in the text lines of orders and positions.
inline constexpr auto orderTextTail = words<"Liefertermin KostID">();

/// Fields of the lines that the entry objects do not have: they are written empty and dropped when read.
inline constexpr auto lackedByKunde = words<"ImportType">();
inline constexpr auto lackedByAuftrag = words<"Preisliste Preistyp IndFild4">();

inline constexpr auto customerLineOrder = fieldOrder(kundeFields, customerLine, lackedByKunde);
inline constexpr auto contractLineOrder = fieldOrder(vertragFields, contractLine);
inline constexpr auto orderLineOrder = fieldOrder(auftragFields, orderLine, lackedByAuftrag);
inline constexpr auto positionLineOrder = fieldOrder(auftragsPosFields, positionLine);

static_assert(customerLine.size() == 57 && contractLine.size() == 23 && orderLine.size() == 60 &&
              positionLine.size() == 15 && customerTextLine.size() == 65);

enum class LineKind : std::uint8_t { None, Customer, Contract, Order, Position };

/// The line that a code has in a version-2 file. 44 has none, on purpose: deleted jobs are not exchanged.
constexpr LineKind lineKind(std::int64_t code) {
  if (code == qxtJobAuftragsPos) return LineKind::Position;
  if (code < qxtjobkunden || code > qxtjobkundenverträgedone || code % 10 > 3) return LineKind::None;
  switch (code / 10) {
  case 1:
    return LineKind::Customer;
  case 3:
    return LineKind::Order;
  default:
    return LineKind::Contract;
  }
}

constexpr bool isHeader(LineKind kind) { return kind != LineKind::None && kind != LineKind::Position; }

constexpr std::size_t fieldCount(std::int64_t code) {
  switch (lineKind(code)) {
  case LineKind::Customer:
    return customerLine.size();
  case LineKind::Contract:
    return contractLine.size();
  case LineKind::Order:
    return orderLine.size();
  case LineKind::Position:
    return positionLine.size();
  case LineKind::None:
    break;
  }
  return 0;
}

/// A header of a version-1 file: the codes of that version, and those of version 2 that share the table.
constexpr bool isVersion1Header(std::int64_t code) {
  return isHeader(lineKind(code)) || code == qxtJobTypeKundenFehler || code == qxtJobTypeVerträgeFehler ||
         code == qxtJobTypeAufträgeFehler;
}

constexpr std::size_t fieldCount1(std::int64_t code) {
  if (code == qxtJobTypeSubItem) return version1PositionLine.size();
  return isVersion1Header(code) ? version1HeaderLine.size() : 0;
}

} // namespace qx
