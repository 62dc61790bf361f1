#include "engine/job_editing.h"

#include "engine/contract_check.h"
#include "rules/active_connection.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

namespace qx {
namespace {

/// Computed by the query, no column of the table.
constexpr ColumnName orderOfPositions = "intPos";

/// A clerk does not wait longer for another program than this.
class ShortWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds waited) override { return waited < std::chrono::seconds(5); }
};

/// Runs the work as one unit where units are ours.
template <class Work>
void asUnit(Connection& connection, Work&& work) {
  ShortWait wait;
  JoinedUnit unit(connection, &wait);
  work();
  unit.commit();
}

} // namespace

PositionTable::PositionTable(Recordset& rows) {
  for (std::size_t i = 0; i < rows.fieldCount(); ++i) {
    const ColumnName column(rows.fieldName(i));
    columns_.push_back({std::string(column.text()), column.hash()});
  }
  for (; !rows.eof(); rows.moveNext()) {
    auto& row = rows_.emplace_back();
    for (std::size_t i = 0; i < columns_.size(); ++i) row.push_back(rows.value(i));
  }
}

std::optional<std::size_t> PositionTable::find(ColumnName column) const {
  for (std::size_t i = 0; i < columns_.size(); ++i)
    if (columns_[i].hash == column.hash()) return i;
  return std::nullopt;
}

const Value& PositionTable::at(std::size_t row, ColumnName column) const {
  static const Value none;
  const auto place = find(column);
  return place ? rows_[row][*place] : none;
}

void PositionTable::set(std::size_t row, ColumnName column, Value value) {
  if (const auto place = find(column)) rows_[row][*place] = std::move(value);
}

std::size_t PositionTable::add() {
  rows_.emplace_back(columns_.size());
  return rows_.size() - 1;
}

void PositionTable::remove(std::size_t row) { rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row)); }

void PositionTable::copyTo(Recordset& target, std::size_t row) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const ColumnName column(columns_[i].name);
    if (column != orderOfPositions && !rows_[row][i].isNull()) target.set(column, rows_[row][i]);
  }
}

std::unique_ptr<Recordset> JobEditing::header(std::string_view jobId) const {
  return activeConnection(environment_)
      .open(sql("SELECT * From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql));
}

std::unique_ptr<Recordset> JobEditing::contractHeader(std::string_view jobId) const {
  return activeConnection(environment_)
      .open(sql("Select * From ImportKopf  Where JobID = '"_sql, value(jobId), "'"_sql));
}

PositionTable JobEditing::positions(std::string_view jobId) const {
  return PositionTable(
      *activeConnection(environment_)
           .open(sql("SELECT *, Cast(Positionsnummer as int) as intPos From ImportPos where JobID = '"_sql,
                     value(jobId), "' Order By intPos"_sql)));
}

std::unique_ptr<Recordset> JobEditing::contractsOf(std::string_view customer) const {
  // Completed on purpose: the statement was handed down without the codes and its closing bracket.
  return activeConnection(environment_)
      .open(sql("Select * From ImportKopf where Kundennummer = '"_sql, value(customer),
                "' And (JobType = 40 or JobType = 41 or JobType = 42 or JobType = 43 or JobType = 44)"_sql));
}

void JobEditing::writeHeader(const ReadJob& job, std::span<const ColumnChange> changes) const {
  const auto row = header(job.jobId);
  if (row->eof()) throw StatementError("Der Vorgang ist nicht mehr vorhanden.", 0);
  // A job that was processed meanwhile must not be set back.
  if (row->value("JobType").integer().value_or(0) != job.jobType)
    throw StatementError("Der Vorgang wurde inzwischen verarbeitet oder von anderer Seite geändert.", 0);
  if (changes.empty()) return;
  for (const ColumnChange& change : changes)
    if (row->hasField(change.column)) row->set(change.column, change.content);
  row->update();
}

void JobEditing::save(const ReadJob& job, std::span<const ColumnChange> changes) const {
  asUnit(activeConnection(environment_), [&] { writeHeader(job, changes); });
}

void JobEditing::saveCustomer(const ReadJob& job, std::span<const ColumnChange> changes,
                              std::string_view customer, CheckStatus status) const {
  asUnit(activeConnection(environment_), [&] {
    ContractCheck(environment_).checkCustomerContracts(customer);
    auto worst = static_cast<std::int64_t>(status);
    for (const auto contracts = contractsOf(customer); !contracts->eof(); contracts->moveNext()) {
      const auto code = contracts->value("JobType").integer().value_or(0);
      if (code <= qxtJobKundenVerträgeError)
        worst = std::max(worst, contracts->value("Status").integer().value_or(0));
    }
    std::vector<ColumnChange> all(changes.begin(), changes.end());
    all.push_back({"ImportType", Value(worst)});
    writeHeader(job, all);
    const auto contracts =
        activeConnection(environment_)
            .open(sql(
                "SELECT ImportType FROM ImportKopf WHERE (JobType = 40 Or JobType = 41 or JobType = 42) AND "
                "Kundennummer = '"_sql,
                value(customer), "'"_sql));
    for (; !contracts->eof(); contracts->moveNext()) {
      contracts->set("ImportType", Value(worst));
      contracts->update();
    }
  });
}

void JobEditing::saveOrder(const ReadJob& job, std::span<const ColumnChange> changes,
                           const PositionTable& positions) const {
  asUnit(activeConnection(environment_), [&] {
    writeHeader(job, changes);
    replacePositions(job.jobId, positions);
  });
}

void JobEditing::replacePositions(std::string_view jobId, const PositionTable& positions) const {
  const PositionTable before =
      activeConnection(environment_).ownsWork() ? PositionTable() : this->positions(jobId);
  activeConnection(environment_)
      .execute(sql("Delete From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  try {
    insert(jobId, positions);
  } catch (const std::exception&) {
    // A host's connection has no unit of ours that could be rolled back.
    if (!activeConnection(environment_).ownsWork()) putBack(jobId, before);
    throw;
  }
}

void JobEditing::insert(std::string_view jobId, const PositionTable& positions) const {
  const auto target = activeConnection(environment_)
                          .open(sql("Select * From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  for (std::size_t row = 0; row < positions.size(); ++row) {
    target->addNew();
    positions.copyTo(*target, row);
    target->update();
  }
}

void JobEditing::putBack(std::string_view jobId, const PositionTable& before) const noexcept {
  try {
    activeConnection(environment_)
        .execute(sql("Delete From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
    insert(jobId, before);
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"positions put back", error.what(), jobId});
  }
}

void JobEditing::deleteHeader(std::string_view jobId) const {
  asUnit(activeConnection(environment_), [&] {
    activeConnection(environment_)
        .execute(sql("Delete From ImportKopf  Where JobID = '"_sql, value(jobId), "'"_sql));
  });
}

std::vector<std::pair<std::string, std::string>> JobEditing::units() const {
  std::vector<std::pair<std::string, std::string>> units;
  const auto rows =
      activeConnection(environment_).open(sql("SELECT Mengeneinheit, Langtext From Mengeneinheiten"_sql));
  for (; !rows->eof(); rows->moveNext())
    units.emplace_back(rows->text("Mengeneinheit"), rows->text("Langtext"));
  return units;
}

} // namespace qx
