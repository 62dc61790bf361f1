// What the dialogs read of a staged job and write back.
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

/// Rows of a staging table in memory, with every column that the table has.
class StagedRows {
public:
  StagedRows() = default;
  explicit StagedRows(Recordset& rows);

  std::size_t size() const { return rows_.size(); }
  bool has(ColumnName column) const { return find(column).has_value(); }
  /// Null for a column that the table lacks and for a row that there is not.
  const Value& at(std::size_t row, ColumnName column) const;
  /// Does nothing for a column that the table lacks.
  void set(std::size_t row, ColumnName column, Value value);
  /// Appends a row of nulls; its number.
  std::size_t add();
  void remove(std::size_t row);
  /// Sets every column of a new row of the record set.
  void copyTo(Recordset& target, std::size_t row) const;

  /// Sets the columns of a row that differ from the first one here.
  void copyChanged(Recordset& row) const;

  friend bool operator==(const StagedRows&, const StagedRows&) = default;

private:
  std::optional<std::size_t> find(ColumnName column) const;

  /// A column with the hash by which it is found.
  struct Column {
    std::string name;
    std::uint64_t hash = 0;

    friend bool operator==(const Column&, const Column&) = default;
  };

  std::vector<Column> columns_;
  std::vector<std::vector<Value>> rows_;
};

/// A job as it stood when a dialog read it: its row and its positions in the order of their numbers.
struct ReadJob {
  std::string jobId;
  StagedRows header; ///< none or one
  StagedRows positions;

  /// 0 when there is no such job.
  std::int16_t jobType() const;

  friend bool operator==(const ReadJob&, const ReadJob&) = default;
};

/// The job is no longer the one that was read; nothing was written.
class JobChangedError : public std::runtime_error {
public:
  explicit JobChangedError(bool gone)
      : std::runtime_error(gone ? "Der Vorgang ist nicht mehr vorhanden."
                                : "Der Vorgang wurde inzwischen von anderer Seite geändert."),
        gone_(gone) {}
  /// There is no job of this key any more.
  bool gone() const { return gone_; }

private:
  bool gone_;
};

/// Reads and writes on the shared connection. A column that the staging table lacks is not written. What the
/// database raises reaches the caller.
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

  /// The code that the job has now; null when there is none of this key.
  std::optional<std::int16_t> codeOf(std::string_view jobId) const;
  /// The job of a header with its positions.
  ReadJob read(std::string_view jobId, Recordset& header) const;

  /// Runs the work as one unit, provided that the job is still the one that was read, and takes over how it
  /// stands afterwards. Raises `JobChangedError` otherwise. When the work raises, nothing of it is stored; on
  /// a host's connection the job is put back as it was read, as far as the database allows. Waits for other
  /// programs as `wait` says, without one for a few seconds.
  void edit(ReadJob& job, const std::function<void()>& work, BusyWait* wait = nullptr) const;

  /// @name The work of `edit`
  /// @{
  void save(std::string_view jobId, std::span<const ColumnChange> changes) const;
  /// Changes what the first position of a contract holds in place of its header.
  void saveContractPosition(std::string_view jobId, std::span<const ColumnChange> changes) const;
  /// The same as `save` for a customer job. Its staged contracts which are not done are checked, with the
  /// result stored in them. Its `ImportType`, and that of its staged contracts which are not done, becomes
  /// `status` or the worst `Status` of those contracts; without a status it stays.
  void saveCustomer(std::string_view jobId, std::span<const ColumnChange> changes, std::string_view customer,
                    std::optional<CheckStatus> status) const;
  /// Gives the staged contracts of a customer which are not done another number.
  void moveContracts(std::string_view from, std::string_view to) const;
  /// Replaces the positions of a job.
  void savePositions(std::string_view jobId, const StagedRows& positions) const;
  /// Deletes the header of a job. Its positions stay.
  void deleteHeader(std::string_view jobId) const;
  /// @}

  /// The units that positions may be counted in: code and text.
  std::vector<std::pair<std::string, std::string>> units() const;

private:
  void putBack(const ReadJob& job) const noexcept;

  Environment& environment_;
};

} // namespace qx
