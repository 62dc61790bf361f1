// One connection to a SQLite database file.
#pragma once

#include "platform/database.h"

#include <memory>
#include <string>

struct sqlite3;

namespace qx {

namespace sqlite {
class ConnectionState;
}

/// Who begins and ends units of work on a connection; on a host's, units and savepoints do nothing.
enum class WorkOwner { Component, Host };

/// Implements the connection port on SQLite. Statements are compiled once and cached; every value is bound. A
/// failed statement leaves the unit of work open unless its error type says otherwise.
class SqliteConnection final : public Connection {
public:
  /// Takes ownership of the handle.
  SqliteConnection(sqlite3* handle, std::string target, WorkOwner workOwner);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection() override;

  const std::string& connectionString() const override;
  std::vector<std::filesystem::path> files() const override;
  std::int64_t execute(const Sql& statement) override;
  void put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) override;
  std::unique_ptr<BulkStaging> bulkStaging() override;
  std::unique_ptr<Maintenance> maintenance() override;
  std::vector<std::string> tableNames() override;
  std::string_view rowKey() const override;
  std::unique_ptr<Recordset> open(const Sql& statement) override;
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override;
  std::unique_ptr<Recordset> openStream(const Sql& statement) override;
  bool ownsWork() const override;
  bool inWork() const override;
  void beginWork(BusyWait* wait) override;
  void commitWork() override;
  void rollbackWork() noexcept override;
  void beginReading() override;
  void endReading() noexcept override;
  void interrupt() noexcept override;
  void setSavepoint() override;
  void releaseSavepoint() override;
  void rollbackToSavepoint() noexcept override;

private:
  void undoUnit() noexcept;

  std::unique_ptr<sqlite::ConnectionState> state_;
};

} // namespace qx
