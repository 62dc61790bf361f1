// Reads and writes staged jobs for the dialogs.
#pragma once

#include "model/job_codes.h"
#include "platform/environment.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// A new value of a header column.
struct ColumnChange {
  ColumnName column;
  Value content;
};

/// Rows of a staging table in memory, with all columns of the table.
class StagedRows {
public:
  StagedRows() = default;
  explicit StagedRows(Recordset& rows);

  std::size_t size() const { return rows_.size(); }
  bool has(ColumnName column) const { return find(column).has_value(); }
  /// Null for a missing column or row.
  const Value& at(std::size_t row, ColumnName column) const;
  /// Does nothing for a missing column.
  void set(std::size_t row, ColumnName column, Value value);
  /// Appends a row of nulls and returns its index.
  std::size_t add();
  void remove(std::size_t row);
  /// Sets every column of a new row of the record set.
  void copyTo(Recordset& target, std::size_t row) const;

  /// Sets the columns of a row that differ from the first row here.
  void copyChanged(Recordset& row) const;

  friend bool operator==(const StagedRows&, const StagedRows&) = default;

private:
  std::optional<std::size_t> find(ColumnName column) const;

  /// A column with its hash.
  struct Column {
    std::string name;
    std::uint64_t hash = 0;

    friend bool operator==(const Column&, const Column&) = default;
  };

  std::vector<Column> columns_;
  std::vector<std::vector<Value>> rows_;
};

/// A job as a dialog read it: its row and its positions, sorted by number.
struct ReadJob {
  std::string jobId;
  StagedRows header; ///< none or one
  StagedRows positions;

  /// 0 when there is no such job.
  std::int16_t jobType() const;

  friend bool operator==(const ReadJob&, const ReadJob&) = default;
};

/// The job has changed since it was read; nothing was written.
class JobChangedError : public std::runtime_error {
public:
  enum class Change : std::uint8_t { Edited, Gone };

  explicit JobChangedError(Change change)
      : std::runtime_error(change == Change::Gone
                               ? "Der Vorgang ist nicht mehr vorhanden."
                               : "Der Vorgang wurde inzwischen von anderer Seite geändert."),
        change_(change) {}
  /// No job has this key any longer.
  bool gone() const { return change_ == Change::Gone; }

private:
  Change change_;
};

/// Reads and writes on the shared connection. A column that the staging table lacks is not written. Database
/// errors reach the caller.
class JobEditing {
public:
  explicit JobEditing(Environment& environment) : environment_(environment) {}

  /// The header rows of this key: none or one.
  std::unique_ptr<Recordset> header(std::string_view jobId) const;
  /// The same, for contract jobs.
  std::unique_ptr<Recordset> contractHeader(std::string_view jobId) const;
  StagedRows positions(std::string_view jobId) const;
  /// The staged contracts that came with this customer, done and deleted ones included.
  std::unique_ptr<Recordset> contractsOf(std::string_view customer) const;

  /// The current code of the job; null when no job has this key.
  std::optional<std::int16_t> codeOf(std::string_view jobId) const;
  /// The job of a header with its positions.
  ReadJob read(std::string_view jobId, Recordset& header) const;

  /// Runs the work as one unit, provided that the job is unchanged since it was read, and rereads it
  /// afterwards. Raises `JobChangedError` otherwise. When the work raises, nothing is stored; on a host's
  /// connection the job is restored as far as the database allows. Waits for other programs as long as `wait`
  /// decides (null: a few seconds). When it has to give way to another program, the work runs again.
  void edit(ReadJob& job, const std::function<void()>& work, BusyWait* wait = nullptr) const;

  /// @name The work of `edit`
  /// @{
  void save(std::string_view jobId, std::span<const ColumnChange> changes) const;
  /// Changes the first position of a contract instead of its header.
  void saveContractPosition(std::string_view jobId, std::span<const ColumnChange> changes) const;
  /// Like `save`, for a customer job. Checks its staged contracts that are not done and stores the result in
  /// them. Its `ImportType` and that of those contracts becomes `status` or the worst `Status` of the
  /// contracts; without a status it stays.
  void saveCustomer(std::string_view jobId, std::span<const ColumnChange> changes, std::string_view customer,
                    std::optional<CheckStatus> status) const;
  /// Changes the customer number of the staged contracts that are not done.
  void moveContracts(std::string_view from, std::string_view to) const;
  /// Replaces the positions of a job.
  void savePositions(std::string_view jobId, const StagedRows& positions) const;
  /// Deletes the header of a job. Its positions stay.
  void deleteHeader(std::string_view jobId) const;
  /// @}

  /// The units for positions: code and text.
  std::vector<std::pair<std::string, std::string>> units() const;

private:
  void editOnce(ReadJob& job, const std::function<void()>& work, BusyWait* wait) const;
  void putBack(const ReadJob& job) const;

  Environment& environment_;
};

} // namespace qx
