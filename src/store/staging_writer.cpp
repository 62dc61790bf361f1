#include "store/staging_writer.h"

#include "model/job_codes.h"
#include "store/record_columns.h"

#include <array>
#include <string>
#include <utility>

namespace qx {
namespace {

struct HeaderRow {
  std::unique_ptr<Recordset> row;
  std::optional<std::int16_t> jobTypeBefore; ///< null for a new row
};

HeaderRow openHeader(Connection& connection, std::string_view jobId) {
  auto row = connection.open(sql("SELECT * From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql));
  std::optional<std::int16_t> before;
  if (row->eof())
    row->addNew();
  else
    before = static_cast<std::int16_t>(row->value("JobType").integer().value_or(0));
  row->set("ImportType", stagedImportType);
  return {std::move(row), before};
}

std::unique_ptr<Recordset> openPosition(Connection& connection, std::string_view childId) {
  auto row = connection.open(sql("SELECT * From ImportPos where ChildID = '"_sql, value(childId), "'"_sql));
  if (row->eof()) row->addNew();
  return row;
}

template <const auto& table, class Record>
void writePosition(Connection& connection, const Record& position) {
  const auto row = openPosition(connection, position.ChildID);
  setColumns<table>(*row, position, "Positionsnummer");
  // The column keeps the number as text.
  row->set("Positionsnummer", std::to_string(position.Positionsnummer));
  row->update();
}

} // namespace

std::optional<std::int16_t> writeStaged(Connection& connection, const KundeFields& job) {
  const auto [row, before] = openHeader(connection, job.JobID);
  setColumns<kundeFields>(*row, job);
  row->update();
  return before;
}

std::optional<std::int16_t> writeStaged(Connection& connection, const VertragFields& job) {
  const auto [row, before] = openHeader(connection, job.JobID);
  setColumns<vertragFields>(*row, job, "Vertragsende");
  const bool open = job.Vertragsende.empty() || job.Vertragsende == openContractEnd;
  row->set("Vertragsende", open ? Value::null() : Value(job.Vertragsende));
  row->update();
  return before;
}

std::optional<std::int16_t> writeStaged(Connection& connection, const AuftragFields& job) {
  const auto [row, before] = openHeader(connection, job.JobID);
  setColumns<auftragFields>(*row, job);
  row->update();
  return before;
}

void writeStaged(Connection& connection, const AuftragsPosFields& position) {
  writePosition<auftragsPosFields>(connection, position);
}

void writeStaged(Connection& connection, const ImportJobSubItem& position) {
  writePosition<importJobSubItemFields>(connection, position);
}

} // namespace qx
