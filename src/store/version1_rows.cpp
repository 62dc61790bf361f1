#include "store/version1_rows.h"

#include <type_traits>

namespace qx {
namespace {

template <class Property>
void assign(const Value& value, Property& property) {
  if constexpr (std::is_same_v<Property, std::string>)
    property = value.text();
  else if constexpr (std::is_same_v<Property, bool>)
    property = value.truth().value_or(false);
  else if constexpr (std::is_same_v<Property, double>)
    property = value.number().value_or(0);
  else
    property = static_cast<Property>(value.integer().value_or(0));
}

template <class Record, std::size_t fields, std::size_t named>
void readColumns(Recordset& row, const FieldTable<Record, fields>& table,
                 const std::array<std::size_t, named>& order, Record& record) {
  for (const std::size_t index : order) {
    const Value& value = row.value(ColumnName(table[index].column));
    table[index].visit(record, [&value](auto& property) { assign(value, property); });
  }
}

template <class Record, std::size_t fields, std::size_t named>
void setColumns(Recordset& row, const FieldTable<Record, fields>& table,
                const std::array<std::size_t, named>& order, const Record& record,
                std::string_view except = {}) {
  for (const std::size_t index : order)
    if (table[index].name != except)
      row.set(ColumnName(table[index].column),
              table[index].visit(record, [](const auto& property) { return Value(property); }));
}

} // namespace

std::shared_ptr<ImportJob> readVersion1Job(Recordset& row) {
  auto job = std::make_shared<ImportJob>();
  readColumns(row, importJobFields, version1HeaderOrder, *job);
  return job;
}

std::shared_ptr<ImportJobSubItem> readVersion1Position(Recordset& row) {
  auto position = std::make_shared<ImportJobSubItem>();
  readColumns(row, importJobSubItemFields, version1PositionOrder, *position);
  return position;
}

std::unique_ptr<Recordset> openVersion1Header(Connection& connection, std::string_view jobId) {
  return connection.open(sql("Select * From [ImportKopf] where [JobID] = '"_sql, value(jobId), "'"_sql));
}

std::unique_ptr<Recordset> openVersion1Position(Connection& connection, std::string_view childId) {
  return connection.open(sql("Select * From [ImportPos] where [ChildID] = '"_sql, value(childId), "'"_sql));
}

std::unique_ptr<Recordset> openVersion1Positions(Connection& connection, std::string_view jobId) {
  return connection.open(
      sql("Select * From [ImportPos] where [JobID] = '"_sql, value(jobId), "' Order by Positionsnummer"_sql));
}

void insertVersion1(Connection& connection, const ImportJob& job) {
  const auto row = openVersion1Header(connection, job.JobID);
  row->addNew();
  row->set("JobID", job.JobID);
  updateVersion1(*row, job);
}

void insertVersion1(Connection& connection, const ImportJobSubItem& position) {
  const auto row = openVersion1Position(connection, position.ChildID);
  row->addNew();
  updateVersion1(*row, position);
}

void updateVersion1(Recordset& row, const ImportJob& job) {
  setColumns(row, importJobFields, version1HeaderOrder, job, "JobID");
  row.update();
}

void updateVersion1(Recordset& row, const ImportJobSubItem& position) {
  setColumns(row, importJobSubItemFields, version1PositionOrder, position);
  // The column keeps the number as text.
  row.set("Positionsnummer", std::to_string(position.Positionsnummer));
  row.update();
}

} // namespace qx
