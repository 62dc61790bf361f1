#include "engine/job_editing.h"

#include "engine/contract_check.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "store/state_feed.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

namespace qx {
namespace {

/// Computed by the query, not a column of the table.
constexpr ColumnName orderOfPositions = "intPos";

/// How long a clerk waits for another program.
class ShortWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds waited) override { return waited < std::chrono::seconds(5); }
};

} // namespace

StagedRows::StagedRows(Recordset& rows) {
  for (std::size_t i = 0; i < rows.fieldCount(); ++i) {
    const ColumnName column(rows.fieldName(i));
    columns_.push_back({std::string(column.text()), column.hash()});
  }
  for (; !rows.eof(); rows.moveNext()) {
    auto& row = rows_.emplace_back();
    for (std::size_t i = 0; i < columns_.size(); ++i) row.push_back(rows.value(i));
  }
}

std::optional<std::size_t> StagedRows::find(ColumnName column) const {
  for (std::size_t i = 0; i < columns_.size(); ++i)
    if (columns_[i].hash == column.hash()) return i;
  return std::nullopt;
}

const Value& StagedRows::at(std::size_t row, ColumnName column) const {
  static const Value none;
  const auto index = find(column);
  return index && row < rows_.size() ? rows_[row][*index] : none;
}

void StagedRows::set(std::size_t row, ColumnName column, Value value) {
  if (const auto index = find(column)) rows_[row][*index] = std::move(value);
}

std::size_t StagedRows::add() {
  rows_.emplace_back(columns_.size());
  return rows_.size() - 1;
}

void StagedRows::remove(std::size_t row) { rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row)); }

void StagedRows::copyTo(Recordset& target, std::size_t row) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const ColumnName column(columns_[i].name);
    if (column != orderOfPositions && !rows_[row][i].isNull()) target.set(column, rows_[row][i]);
  }
}

void StagedRows::copyChanged(Recordset& row) const {
  for (const Column& column : columns_) {
    const ColumnName name(column.name);
    if (!(row.value(name) == at(0, name))) row.set(name, at(0, name));
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

StagedRows JobEditing::positions(std::string_view jobId) const {
  return StagedRows(
      *activeConnection(environment_)
           .open(sql("SELECT *, Cast(Positionsnummer as int) as intPos From ImportPos where JobID = '"_sql,
                     value(jobId), "' Order By intPos"_sql)));
}

std::unique_ptr<Recordset> JobEditing::contractsOf(std::string_view customer) const {
  // Completed on purpose: the original statement lacks the codes and its closing bracket.
  return activeConnection(environment_)
      .open(sql("Select * From ImportKopf where Kundennummer = '"_sql, value(customer),
                "' And (JobType = 40 or JobType = 41 or JobType = 42 or JobType = 43 or JobType = 44)"_sql));
}

std::int16_t ReadJob::jobType() const { return jobCode(header.at(0, "JobType")); }

std::optional<std::int16_t> JobEditing::codeOf(std::string_view jobId) const {
  const ReadJob job{std::string(jobId), StagedRows(*header(jobId)), {}};
  return job.header.size() == 0 ? std::nullopt : std::optional(job.jobType());
}

ReadJob JobEditing::read(std::string_view jobId, Recordset& header) const {
  return {std::string(jobId), StagedRows(header), positions(jobId)};
}

void JobEditing::edit(ReadJob& job, const std::function<void()>& work, BusyWait* wait) const {
  doneAgainOnConflict(environment_, "saving a job", [&] { editOnce(job, work, wait); });
}

void JobEditing::editOnce(ReadJob& job, const std::function<void()>& work, BusyWait* wait) const {
  Connection& connection = activeConnection(environment_);
  ShortWait shortWait;
  WorkUnit unit(connection, wait != nullptr ? wait : &shortWait, Join::IfOpen);
  ReadJob now = read(job.jobId, *header(job.jobId));
  if (now.header.size() == 0) throw JobChangedError(JobChangedError::Change::Gone);
  if (!(now == job)) throw JobChangedError(JobChangedError::Change::Edited);
  try {
    work();
    now = read(job.jobId, *header(job.jobId));
  } catch (const std::exception&) {
    // A host's connection has no unit to roll back.
    if (!connection.ownsWork()) putBack(job);
    throw;
  }
  unit.commit();
  job = std::move(now);
}

void JobEditing::save(std::string_view jobId, std::span<const ColumnChange> changes) const {
  if (changes.empty()) return;
  const auto row = header(jobId);
  for (const ColumnChange& change : changes)
    if (row->hasField(change.column)) row->set(change.column, change.content);
  row->update();
}

void JobEditing::saveContractPosition(std::string_view jobId, std::span<const ColumnChange> changes) const {
  const auto position = openContractPositions(activeConnection(environment_), jobId);
  if (position->eof()) return;
  bool changed = false;
  for (const ColumnChange& change : changes) {
    if (std::ranges::find(contractPositionColumns, change.column) == contractPositionColumns.end() ||
        !position->hasField(change.column))
      continue;
    position->set(change.column, change.content);
    changed = true;
  }
  if (changed) position->update();
}

void JobEditing::saveCustomer(std::string_view jobId, std::span<const ColumnChange> changes,
                              std::string_view customer, std::optional<CheckStatus> status) const {
  ContractCheck(environment_).checkCustomerContracts(customer);
  std::vector<ColumnChange> all(changes.begin(), changes.end());
  if (!status) return save(jobId, all);
  auto worst = static_cast<std::int64_t>(*status);
  for (const auto contracts = contractsOf(customer); !contracts->eof(); contracts->moveNext()) {
    const auto code = contracts->value("JobType").integer().value_or(0);
    if (code <= qxtJobKundenVerträgeError)
      worst = std::max(worst, contracts->value("Status").integer().value_or(0));
  }
  all.push_back({"ImportType", Value(worst)});
  save(jobId, all);
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
}

void JobEditing::moveContracts(std::string_view from, std::string_view to) const {
  activeConnection(environment_)
      .execute(sql("Update ImportKopf Set Kundennummer = '"_sql, value(to), "' Where Kundennummer = '"_sql,
                   value(from), "' And JobType In (40, 41, 42)"_sql));
}

void JobEditing::savePositions(std::string_view jobId, const StagedRows& positions) const {
  activeConnection(environment_)
      .execute(sql("Delete From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  const auto target = activeConnection(environment_)
                          .open(sql("Select * From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  for (std::size_t row = 0; row < positions.size(); ++row) {
    target->addNew();
    positions.copyTo(*target, row);
    target->update();
  }
}

void JobEditing::putBack(const ReadJob& job) const {
  trapped(environment_.diagnostics, {"job put back", job.jobId}, [&] {
    const auto row = header(job.jobId);
    if (!row->eof()) {
      job.header.copyChanged(*row);
      row->update();
    }
    if (!(positions(job.jobId) == job.positions)) savePositions(job.jobId, job.positions);
  });
}

void JobEditing::deleteHeader(std::string_view jobId) const {
  auto gone = deletionOf(activeConnection(environment_), jobId);
  activeConnection(environment_)
      .execute(sql("Delete From ImportKopf  Where JobID = '"_sql, value(jobId), "'"_sql));
  if (gone) tellChange(environment_, std::move(*gone));
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
