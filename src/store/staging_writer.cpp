#include "store/staging_writer.h"

#include "model/job_codes.h"

#include <array>
#include <string>
#include <utility>

namespace qx {
namespace {

template <const auto& table, std::size_t... index>
constexpr auto columnNames(std::index_sequence<index...> /*places*/) {
  return std::array<ColumnName, sizeof...(index)>{ColumnName(table[index].column)...};
}

/// The columns of a field table, hashed at compile time.
template <const auto& table>
constexpr auto columns = columnNames<table>(std::make_index_sequence<table.size()>{});

/// Sets every stored property of the record but `except`, which the caller sets.
template <const auto& table, class Record>
void setColumns(Recordset& row, const Record& record, std::string_view except = {}) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto& field = table[i];
    if (!field.stored() || field.name == except) continue;
    row.set(columns<table>[i], field.visit(record, [](const auto& property) { return Value(property); }));
  }
}

/// Opens the row of a key and makes it ready for writing.
std::unique_ptr<Recordset> openForWriting(Connection& connection, const Sql& statement) {
  auto row = connection.open(statement);
  if (row->eof()) row->addNew();
  return row;
}

std::unique_ptr<Recordset> openHeader(Connection& connection, std::string_view jobId) {
  auto row =
      openForWriting(connection, sql("SELECT * From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql));
  row->set("ImportType", stagedImportType);
  return row;
}

std::unique_ptr<Recordset> openPosition(Connection& connection, std::string_view childId) {
  return openForWriting(connection,
                        sql("SELECT * From ImportPos where ChildID = '"_sql, value(childId), "'"_sql));
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

void writeStaged(Connection& connection, const KundeFields& job) {
  const auto row = openHeader(connection, job.JobID);
  setColumns<kundeFields>(*row, job);
  row->update();
}

void writeStaged(Connection& connection, const VertragFields& job) {
  const auto row = openHeader(connection, job.JobID);
  setColumns<vertragFields>(*row, job, "Vertragsende");
  const bool open = job.Vertragsende.empty() || job.Vertragsende == openContractEnd;
  row->set("Vertragsende", open ? Value::null() : Value(job.Vertragsende));
  row->update();
}

void writeStaged(Connection& connection, const AuftragFields& job) {
  const auto row = openHeader(connection, job.JobID);
  setColumns<auftragFields>(*row, job);
  row->update();
}

void writeStaged(Connection& connection, const AuftragsPosFields& position) {
  writePosition<auftragsPosFields>(connection, position);
}

void writeStaged(Connection& connection, const ImportJobSubItem& position) {
  writePosition<importJobSubItemFields>(connection, position);
}

} // namespace qx
