// A connection that writes down the text of every statement, and every column that is set, before it passes
// them on.
#pragma once

#include "platform/bulk_staging.h"
#include "platform/database.h"
#include "platform/maintenance.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// Writes down the names of the columns in the order in which they are set.
class RecordingRecordset final : public Recordset {
public:
  RecordingRecordset(std::unique_ptr<Recordset> rows, std::vector<std::string>& columns)
      : rows_(std::move(rows)), columns_(columns) {}

  std::size_t recordCount() const override { return rows_->recordCount(); }
  bool eof() const override { return rows_->eof(); }
  void moveFirst() override { rows_->moveFirst(); }
  void moveNext() override { rows_->moveNext(); }
  void moveTo(std::size_t position) override { rows_->moveTo(position); }
  bool resync() override { return rows_->resync(); }
  void requery() override { rows_->requery(); }
  std::size_t fieldCount() const override { return rows_->fieldCount(); }
  std::string_view fieldName(std::size_t index) const override { return rows_->fieldName(index); }
  bool hasField(ColumnName column) const override { return rows_->hasField(column); }
  const Value& value(ColumnName column) override { return rows_->value(column); }
  const Value& value(std::size_t index) override { return rows_->value(index); }
  void addNew() override { rows_->addNew(); }
  void set(ColumnName column, Value value) override {
    columns_.emplace_back(column.text());
    rows_->set(column, std::move(value));
  }
  void update() override { rows_->update(); }
  void cancelUpdate() override { rows_->cancelUpdate(); }

private:
  std::unique_ptr<Recordset> rows_;
  std::vector<std::string>& columns_;
};

/// Everything else is forwarded; as a host's connection it has no units of work of its own.
class RecordingConnection : public Connection {
public:
  explicit RecordingConnection(std::shared_ptr<Connection> connection, bool host = false)
      : connection_(std::move(connection)), host_(host) {}

  const std::string& connectionString() const override { return connection_->connectionString(); }
  std::vector<std::filesystem::path> files() const override { return connection_->files(); }
  std::int64_t execute(const Sql& statement) override { return connection_->execute(recorded(statement)); }
  void put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) override {
    connection_->put(table, row, keys);
  }
  std::unique_ptr<BulkStaging> bulkStaging() override { return connection_->bulkStaging(); }
  std::unique_ptr<Maintenance> maintenance() override { return connection_->maintenance(); }
  std::vector<std::string> tableNames() override { return connection_->tableNames(); }
  std::string_view rowKey() const override { return connection_->rowKey(); }
  Sql beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const override {
    return connection_->beginsWith(text, prefix, afterPrefix);
  }
  Sql comesAfter(std::span<const ColumnValue> position) const override {
    return connection_->comesAfter(position);
  }
  std::unique_ptr<Recordset> open(const Sql& statement) override {
    return watched(connection_->open(recorded(statement)));
  }
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override {
    return watched(connection_->openKeyset(recorded(statement)));
  }
  std::unique_ptr<Recordset> openStream(const Sql& statement) override {
    return watched(connection_->openStream(recorded(statement)));
  }

  bool ownsWork() const override { return !host_ && connection_->ownsWork(); }
  bool inWork() const override { return connection_->inWork(); }
  void beginWork(BusyWait* wait) override {
    if (!host_) connection_->beginWork(wait);
  }
  void commitWork() override {
    ++commits;
    if (!host_) connection_->commitWork();
  }
  void rollbackWork() noexcept override {
    if (!host_) connection_->rollbackWork();
  }
  void beginReading() override {
    if (!host_) connection_->beginReading();
  }
  void endReading() noexcept override {
    if (!host_) connection_->endReading();
  }
  void interrupt() noexcept override { connection_->interrupt(); }
  void setSavepoint() override {
    if (!host_) connection_->setSavepoint();
  }
  void releaseSavepoint() override {
    if (!host_) connection_->releaseSavepoint();
  }
  void rollbackToSavepoint() noexcept override {
    if (!host_) connection_->rollbackToSavepoint();
  }

  std::vector<std::string> statements;
  std::vector<Sql> asked;           ///< the same, to be run again
  std::vector<std::string> columns; ///< that were set, of all record sets
  int commits = 0;
  bool refusing = false; ///< every statement raises `StatementError`

private:
  std::unique_ptr<Recordset> watched(std::unique_ptr<Recordset> rows) {
    return std::make_unique<RecordingRecordset>(std::move(rows), columns);
  }
  const Sql& recorded(const Sql& statement) {
    statements.push_back(statement.text());
    asked.push_back(statement);
    if (refusing) throw StatementError("refused", 1);
    return statement;
  }

  std::shared_ptr<Connection> connection_;
  bool host_;
};

} // namespace qx
