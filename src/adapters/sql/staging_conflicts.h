// What both ways of staging a file of jobs read from their temporary tables.
#pragma once

#include "platform/bulk_staging.h"
#include "platform/database.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace qx::relational {

/// Adds the conflicts of a query to the list until it holds `most`. The query has the columns Schluessel,
/// Vorgang and Zeile, and VorigerVorgang and VorigeZeile for keys that stand twice, else Besitzer; for
/// contents all of them and Seit.
void appendConflicts(std::vector<KeyConflict>& conflicts, Connection& connection, const Sql& query,
                     KeyConflict::Kind kind, std::int64_t most);

/// The conflict of the current row of such a query.
KeyConflict conflictOf(Recordset& row, KeyConflict::Kind kind);

/// Calls `leave` with one list of numbers after the other, each short enough for a statement.
void inNumberLists(const std::vector<std::int64_t>& numbers,
                   const std::function<void(const Sql& list)>& leave);

/// What `BulkStaging::changed` gives. Call it before the jobs are copied.
std::vector<BulkStaging::ChangedJob> changedJobs(Connection& connection);

/// Visits rows with Schluessel, Art, StageZiel and StageSperre, and for skipped jobs the columns of
/// `StagedJob::stored`.
void visitStaged(Recordset& rows, const BulkStaging::Visitor& visit);

/// Raises `StatementError` when the database has taken another number of rows than it was given: a trigger
/// can silently drop some.
void requireTaken(std::int64_t taken, std::int64_t expected, std::string_view what);

} // namespace qx::relational
