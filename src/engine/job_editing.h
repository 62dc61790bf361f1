// What the dialogs read of a staged job and write back.
#pragma once

#include "model/job_codes.h"
#include "platform/environment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
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

/// The job that a dialog has read: its key and the code that it had then.
struct ReadJob {
  std::string_view jobId;
  std::int16_t jobType = 0;
};

/// The positions of a job as a table in memory: every column that the staging table has, rows in the order of
/// their numbers.
class PositionTable {
public:
  PositionTable() = default;
  explicit PositionTable(Recordset& rows);

  std::size_t size() const { return rows_.size(); }
  /// Null for a column that the table lacks.
  const Value& at(std::size_t row, ColumnName column) const;
  /// Does nothing for a column that the table lacks.
  void set(std::size_t row, ColumnName column, Value value);
  /// Appends a row of nulls; its number.
  std::size_t add();
  void remove(std::size_t row);
  /// Sets every column of a new row of the record set.
  void copyTo(Recordset& target, std::size_t row) const;

  friend bool operator==(const PositionTable&, const PositionTable&) = default;

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

/// Reads and writes on the shared connection. A column that the staging table lacks is not written. On a
/// connection of our own each writing member is one unit of work. What the database raises reaches the
/// caller; nothing of the member's work is stored then, on a host's connection as far as it can be taken
/// back.
class JobEditing {
public:
  explicit JobEditing(Environment& environment) : environment_(environment) {}

  /// The header rows of this key: none or one.
  std::unique_ptr<Recordset> header(std::string_view jobId) const;
  /// The same, for contract jobs.
  std::unique_ptr<Recordset> contractHeader(std::string_view jobId) const;
  PositionTable positions(std::string_view jobId) const;
  /// The staged contracts that came with this customer, done and deleted ones included.
  std::unique_ptr<Recordset> contractsOf(std::string_view customer) const;

  /// Writes columns of a header. Raises `StatementError` when the job is gone or has another code by now.
  void save(const ReadJob& job, std::span<const ColumnChange> changes) const;
  /// The same for a customer job. Its staged contracts which are not done are checked, with the result stored
  /// in them. Its `ImportType`, and that of its staged contracts which are not done,
  /// becomes `status` or the worst `Status` of those contracts.
  void saveCustomer(const ReadJob& job, std::span<const ColumnChange> changes, std::string_view customer,
                    CheckStatus status) const;
  /// The same for an order, whose positions are replaced.
  void saveOrder(const ReadJob& job, std::span<const ColumnChange> changes,
                 const PositionTable& positions) const;
  /// Deletes the header of a job. Its positions stay.
  void deleteHeader(std::string_view jobId) const;

  /// The units that positions may be counted in: code and text.
  std::vector<std::pair<std::string, std::string>> units() const;

private:
  void writeHeader(const ReadJob& job, std::span<const ColumnChange> changes) const;
  void replacePositions(std::string_view jobId, const PositionTable& positions) const;
  void putBack(std::string_view jobId, const PositionTable& before) const noexcept;
  void insert(std::string_view jobId, const PositionTable& positions) const;

  Environment& environment_;
};

} // namespace qx
