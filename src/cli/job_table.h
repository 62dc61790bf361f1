// Jobs as rows of a table, and the questions that are asked about a set of them.
#pragma once

#include "cli/table.h"
#include "platform/database.h"

#include <string>
#include <vector>

namespace qx::cli {

/// What a line says of a job.
std::vector<TableColumn> jobColumns();
/// From a row of `ImportKopf`.
std::vector<TableCell> jobCells(Recordset& row);

/// Shows the jobs of these keys, and what is to happen to them: as a table with a last line, or as
/// `{"jobs":[...],"would<Verb>":n}`.
void showWhatWould(const Output& output, Connection& connection, const std::vector<std::string>& keys,
                   const std::string& verb);

/// Writes the jobs of these keys with their positions to a new file, with every column and in their states,
/// so that `stage` takes them back. Raises `ProgramError`.
void keepJobs(Connection& connection, const std::vector<std::string>& keys, const std::string& file);

} // namespace qx::cli
