// Writes job records to the staging tables.
#pragma once

#include "model/entry_records.h"
#include "model/import_job.h"
#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace qx {

/// The end date that means "no end" for a contract.
inline constexpr std::string_view openContractEnd = "999999";

/// Each of these sets the record's stored columns of a row, in their order; the caller writes it. Texts
/// are stored as they are, empty ones too, except that the end of a contract is null when it is empty or
/// `openContractEnd`.
void setStaged(RowValues& row, const KundeFields& job);
void setStaged(RowValues& row, const VertragFields& job);
void setStaged(RowValues& row, const AuftragFields& job);
void setStaged(RowValues& row, const AuftragsPosFields& position);
void setStaged(RowValues& row, const ImportJobSubItem& position);

/// Each of these writes one row: the row of the record's key is overwritten when there is one, else a row is
/// added. Only the columns that the record stores are touched.
///
/// For a job, returns the code that its row had before, null for a new row.
///
/// Database errors reach the caller; nothing of the record is then stored.
std::optional<std::int16_t> writeStaged(Connection& connection, const KundeFields& job);
std::optional<std::int16_t> writeStaged(Connection& connection, const VertragFields& job);
std::optional<std::int16_t> writeStaged(Connection& connection, const AuftragFields& job);
void writeStaged(Connection& connection, const AuftragsPosFields& position);
void writeStaged(Connection& connection, const ImportJobSubItem& position);

} // namespace qx
