#include "store/staging_writer.h"

#include "model/job_codes.h"
#include "store/record_columns.h"
#include "store/staged_columns.h"

#include <string>
#include <string_view>
#include <utility>

namespace qx {
namespace {

Sql headerOf(std::string_view jobId) {
  return sql("SELECT * From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql);
}

Sql positionOf(std::string_view childId) {
  return sql("SELECT * From ImportPos where ChildID = '"_sql, value(childId), "'"_sql);
}

template <class Record>
std::optional<std::int16_t> writeHeader(Connection& connection, const Record& job) {
  const auto row = connection.open(headerOf(job.JobID));
  std::optional<std::int16_t> before;
  if (row->eof())
    row->addNew();
  else
    before = jobCode(row->value("JobType"));
  setStaged(*row, job);
  row->update();
  return before;
}

template <class Record>
void writePosition(Connection& connection, const Record& position) {
  const auto row = connection.open(positionOf(position.ChildID));
  if (row->eof()) row->addNew();
  setStaged(*row, position);
  row->update();
}

GivenColumn importTypeColumn() { return {"ImportType", stagedImportType}; }

/// The column keeps the number as text.
GivenColumn numberColumn(std::int32_t positionNumber) {
  return {"Positionsnummer", std::to_string(positionNumber)};
}

} // namespace

void setStaged(RowValues& row, const KundeFields& job) {
  setColumnsInOrder<kundeFields, kundeColumns, kundeColumnOrder>(row, job, {importTypeColumn()});
}

void setStaged(RowValues& row, const VertragFields& job) {
  const bool open = job.Vertragsende.empty() || job.Vertragsende == openContractEnd;
  setColumnsInOrder<vertragFields, vertragColumns, vertragColumnOrder>(
      row, job, {importTypeColumn(), {"Vertragsende", open ? Value::null() : Value(job.Vertragsende)}});
}

void setStaged(RowValues& row, const AuftragFields& job) {
  setColumnsInOrder<auftragFields, auftragColumns, auftragColumnOrder>(row, job, {importTypeColumn()});
}

void setStaged(RowValues& row, const AuftragsPosFields& position) {
  setColumnsInOrder<auftragsPosFields, auftragsPosColumns, auftragsPosColumnOrder>(
      row, position, {numberColumn(position.Positionsnummer)});
}

void setStaged(RowValues& row, const ImportJobSubItem& position) {
  const GivenColumn number = numberColumn(position.Positionsnummer);
  setColumns<importJobSubItemFields>(row, position, number.name);
  row.set(ColumnName(number.name), number.value);
}

std::optional<std::int16_t> writeStaged(Connection& connection, const KundeFields& job) {
  return writeHeader(connection, job);
}

std::optional<std::int16_t> writeStaged(Connection& connection, const VertragFields& job) {
  return writeHeader(connection, job);
}

std::optional<std::int16_t> writeStaged(Connection& connection, const AuftragFields& job) {
  return writeHeader(connection, job);
}

void writeStaged(Connection& connection, const AuftragsPosFields& position) {
  writePosition(connection, position);
}

void writeStaged(Connection& connection, const ImportJobSubItem& position) {
  writePosition(connection, position);
}

} // namespace qx
