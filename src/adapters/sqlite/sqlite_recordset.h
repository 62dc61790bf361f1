// The three kinds of record sets on SQLite.
#pragma once

#include "adapters/sqlite/connection_state.h"
#include "platform/database.h"

#include <cstdint>
#include <vector>

namespace qx::sqlite {

/// The base of record sets on a single table: the pending row and how it is written.
class EditableRecordset : public Recordset {
public:
  EditableRecordset(ConnectionState& connection, RowSource& source)
      : connection_(connection), source_(source) {}

  std::size_t fieldCount() const override { return source_.shape->size(); }
  std::string_view fieldName(std::size_t index) const override { return source_.shape->name(index); }
  bool hasField(ColumnName column) const override { return source_.shape->find(column) < fieldCount(); }
  const Value& value(ColumnName column) override { return value(place(column)); }
  const Value& value(std::size_t index) override;
  void addNew() override;
  void set(ColumnName column, Value value) override;
  void update() override;
  void cancelUpdate() override;

protected:
  /// The stored value in the current row.
  virtual const Value& storedValue(std::size_t index) = 0;
  /// The rowid of the current row, or 0 when there is none.
  virtual std::int64_t currentRowId() = 0;
  /// Called after a row was inserted or changed; `written` are the columns.
  virtual void rowWritten(std::int64_t rowId, bool inserted, const ColumnMask& written,
                          std::vector<Value>& values) = 0;

  std::size_t place(ColumnName column) const;
  ConnectionState& connection() { return connection_; }
  RowSource& source() { return source_; }
  static Value readKey(PreparedStatement& statement) { return statement.column(0, ColumnKind::Plain); }
  void readRow(PreparedStatement& statement, std::vector<Value>& into, std::size_t at) const;

private:
  std::size_t bindPending(PreparedStatement& statement);

  ConnectionState& connection_;
  RowSource& source_;
  std::vector<Value> pending_;
  ColumnMask pendingColumns_;
  bool adding_ = false;
};

/// Reads all rows when opened.
class FetchedRecordset final : public EditableRecordset {
public:
  FetchedRecordset(ConnectionState& connection, const Sql& statement);

  std::size_t recordCount() const override { return rowIds_.size(); }
  bool eof() const override { return position_ >= rowIds_.size(); }
  void moveFirst() override { moveTo(0); }
  void moveNext() override { moveTo(position_ + 1); }
  void moveTo(std::size_t position) override;
  bool resync() override;
  void requery() override;

protected:
  const Value& storedValue(std::size_t index) override;
  std::int64_t currentRowId() override { return eof() ? 0 : rowIds_[position_]; }
  void rowWritten(std::int64_t rowId, bool inserted, const ColumnMask& written,
                  std::vector<Value>& values) override;

private:
  void fetch();

  RowQuery& query_;
  std::vector<Value> parameters_;
  std::vector<std::int64_t> rowIds_; ///< 0 for rows that cannot be changed
  std::vector<Value> values_;
  std::size_t position_ = 0;
};

/// Holds the keys and reads the current row on demand.
class KeysetRecordset final : public EditableRecordset {
public:
  KeysetRecordset(ConnectionState& connection, const Sql& statement);

  std::size_t recordCount() const override { return keys_.size(); }
  bool eof() const override { return position_ >= keys_.size(); }
  void moveFirst() override { moveTo(0); }
  void moveNext() override { moveTo(position_ + 1); }
  void moveTo(std::size_t position) override;
  bool resync() override;
  void requery() override;

protected:
  const Value& storedValue(std::size_t index) override;
  std::int64_t currentRowId() override;
  void rowWritten(std::int64_t rowId, bool inserted, const ColumnMask& written,
                  std::vector<Value>& values) override;

private:
  /// SQLite reuses the rowid of a deleted last row, so the key's hash distinguishes the two.
  struct Key {
    std::int64_t rowId = 0;
    std::uint64_t textHash = 0;
  };

  void readKeys();

  KeysetQuery& query_;
  std::vector<Value> parameters_;
  std::vector<Key> keys_;
  std::vector<Value> row_;
  std::size_t position_ = 0;
  bool loaded_ = false;
  bool present_ = false;
};

/// Forward-only and read-only.
class StreamRecordset final : public Recordset {
public:
  StreamRecordset(ConnectionState& connection, const Sql& statement);

  std::size_t recordCount() const override { return count_; }
  bool eof() const override { return eof_; }
  void moveFirst() override { requery(); }
  void moveNext() override;
  void moveTo(std::size_t position) override;
  bool resync() override { return !eof_; }
  void requery() override;
  std::size_t fieldCount() const override { return shape_.size(); }
  std::string_view fieldName(std::size_t index) const override { return shape_.name(index); }
  bool hasField(ColumnName column) const override { return shape_.find(column) < shape_.size(); }
  const Value& value(ColumnName column) override;
  const Value& value(std::size_t index) override { return row_.at(index); }
  void addNew() override { refuse(); }
  void set(ColumnName /*column*/, Value /*value*/) override { refuse(); }
  void update() override { refuse(); }
  void cancelUpdate() override {}

private:
  [[noreturn]] static void refuse();

  PreparedStatement statement_;
  RowShape shape_;
  std::vector<Value> parameters_;
  std::vector<Value> row_;
  std::size_t count_ = 0;
  bool eof_ = true;
};

} // namespace qx::sqlite
