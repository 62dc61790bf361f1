// The columns that version 1 of the component knows, and reading and writing them in the staging tables.
#pragma once

#include "model/import_job.h"
#include "model/job_codes.h"
#include "platform/database.h"
#include "store/field_order.h"

#include <array>
#include <memory>
#include <string_view>

namespace qx {

namespace detail {
// Column sequences that the headers of both versions share.
inline constexpr auto nameToReps =
    words<"Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail Kundengruppe Vertreter1 "
          "Vertreter2 Vertreter3">();
inline constexpr auto paymentToContract =
    words<"Zahlungsart Konto BLZ Kreditinstitut Bemerkung Vertragsnummer">();
inline constexpr auto currencies = words<"Währung WährungEingabe">();
inline constexpr auto reasonsToTaxId =
    words<"Fehlertext Betreff Versandart ZahlungsbedSchl Provisionsgruppe UstIdentNr">();
} // namespace detail

/// The properties of a version-1 header that are stored, in the order of a version-1 job file.
inline constexpr auto version1HeaderLine =
    joined(words<"JobType JobID Status Eingagsdatum Kundennummer AdresseAendernJN">(), detail::nameToReps,
           words<"ZahlungsartAendernJN">(), detail::paymentToContract,
           words<"Vertragsdatum Vertragsbeginn Zahlungsweise">(), detail::reasonsToTaxId, detail::currencies);

/// The same for a position.
inline constexpr auto version1PositionLine =
    words<"JobType JobID ChildID Positionsnummer Vertragsart Artikelnummer Menge Preis">();

inline constexpr auto version1HeaderOrder = fieldOrder(importJobFields, version1HeaderLine);
inline constexpr auto version1PositionOrder = fieldOrder(importJobSubItemFields, version1PositionLine);

/// The current row as a record; null is the empty text, 0 or false. Its positions are not read.
std::shared_ptr<ImportJob> readVersion1Job(Recordset& row);
std::shared_ptr<ImportJobSubItem> readVersion1Position(Recordset& row);

/// The row of a key, empty when there is none.
std::unique_ptr<Recordset> openVersion1Header(Connection& connection, std::string_view jobId);
std::unique_ptr<Recordset> openVersion1Position(Connection& connection, std::string_view childId);
/// The positions of a job, sorted by their numbers as texts: "10" before "2", on purpose.
std::unique_ptr<Recordset> openVersion1Positions(Connection& connection, std::string_view jobId);

/// Adds a row; its key must not be there yet. Positions of a job are not added.
void insertVersion1(Connection& connection, const ImportJob& job);
void insertVersion1(Connection& connection, const ImportJobSubItem& position);

/// Overwrites the version-1 columns of the current row. A header keeps its key, which its positions name; a
/// position takes both keys of the record.
void updateVersion1(Recordset& row, const ImportJob& job);
void updateVersion1(Recordset& row, const ImportJobSubItem& position);

} // namespace qx
