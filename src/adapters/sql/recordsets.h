// The three kinds of record sets.
#pragma once

#include "adapters/sql/group.h"
#include "adapters/sql/statement_cache.h"
#include "platform/database.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace qx::relational {

/// The base of record sets on a single table: the pending row and how it is written.
class EditableRecordset : public Recordset {
public:
  EditableRecordset(Group& group, RowSource& source) : group_(group), source_(source) {}

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
  /// The key of the current row, or 0 when there is none.
  virtual std::int64_t currentRowKey() = 0;
  /// The same of a row that is known although it has not been written yet.
  virtual std::int64_t writtenRowKey() { return 0; }
  /// Whether the current row may be such a one.
  virtual bool isWritten() const { return false; }
  /// Called after a row was inserted or changed; `written` are the columns.
  virtual void rowWritten(std::int64_t rowKey, bool inserted, const ColumnMask& written,
                          std::vector<Value>& values) = 0;

  std::size_t place(ColumnName column) const;
  Group& group() const { return group_; }
  StatementCache& statements() { return group_.statements(); }
  RowSource& source() const { return source_; }
  static std::int64_t readKey(Statement& statement) {
    return statement.column(0, ColumnKind::Plain).integer().value_or(0);
  }

private:
  std::size_t bindPending(Statement& statement);
  std::int64_t insertPending();
  std::int64_t insertNow();
  void updatePending(std::int64_t rowKey);

  Group& group_;
  RowSource& source_;
  std::vector<Value> pending_;
  ColumnMask pendingColumns_;
  bool adding_ = false;
};

/// Reads all rows when opened.
class FetchedRecordset final : public EditableRecordset {
public:
  FetchedRecordset(Group& group, const Sql& statement);

  std::size_t recordCount() const override { return rows_->keys.size(); }
  bool eof() const override { return position_ >= rows_->keys.size(); }
  void moveFirst() override { moveTo(0); }
  void moveNext() override { moveTo(position_ + 1); }
  void moveTo(std::size_t position) override;
  bool resync() override;
  void requery() override;

protected:
  const Value& storedValue(std::size_t index) override;
  std::int64_t currentRowKey() override { return eof() ? 0 : rows_->keys[position_]; }
  std::int64_t writtenRowKey() override;
  bool isWritten() const override;
  void rowWritten(std::int64_t rowKey, bool inserted, const ColumnMask& written,
                  std::vector<Value>& values) override;

private:
  /// The rows, no longer shared with others.
  Rows& ownRows();

  RowQuery& query_;
  std::vector<Value> parameters_;
  std::shared_ptr<const Rows> rows_; ///< keys are 0 for rows that cannot be changed
  std::shared_ptr<Rows> own_;        ///< the same once they have been changed
  std::size_t position_ = 0;
};

/// Holds the keys and reads the current row on demand.
class KeysetRecordset final : public EditableRecordset {
public:
  KeysetRecordset(Group& group, const Sql& statement);

  std::size_t recordCount() const override { return keys_.size(); }
  bool eof() const override { return position_ >= keys_.size(); }
  void moveFirst() override { moveTo(0); }
  void moveNext() override { moveTo(position_ + 1); }
  void moveTo(std::size_t position) override;
  bool resync() override;
  void requery() override;
  void readAhead(std::size_t count) override;

protected:
  const Value& storedValue(std::size_t index) override;
  std::int64_t currentRowKey() override;
  void rowWritten(std::int64_t rowKey, bool inserted, const ColumnMask& written,
                  std::vector<Value>& values) override;

private:
  /// A database may give the row key of a deleted row to a new one; the text key's hash tells them apart.
  struct Key {
    std::int64_t rowKey = 0;
    std::uint64_t textHash = 0;
  };

  void readKeys();
  bool takeRow(std::int64_t rowKey);

  KeysetQuery& query_;
  std::vector<Value> parameters_;
  std::vector<Key> keys_;
  std::unordered_map<std::int64_t, std::vector<Value>> ahead_; ///< rows that were read ahead, by key
  std::uint64_t aheadUnit_ = 0;
  std::uint64_t aheadWrites_ = 0;
  std::vector<Value> row_;
  std::size_t position_ = 0;
  bool loaded_ = false;
  bool present_ = false;
};

/// Forward-only and read-only.
class StreamRecordset final : public Recordset {
public:
  StreamRecordset(StatementCache& statements, const Sql& statement);

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

  StreamQuery query_;
  RowShape shape_;
  std::vector<Value> parameters_;
  std::vector<Value> row_;
  std::size_t count_ = 0;
  bool eof_ = true;
};

} // namespace qx::relational
