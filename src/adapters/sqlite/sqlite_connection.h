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

/// Implements the connection port on SQLite. Statements are compiled once and cached; every value is bound.
/// After a failed statement the unit of work is still open unless the failure says otherwise.
class SqliteConnection final : public Connection {
public:
  /// Takes over the handle. `ownsWork` is false for a connection that stands for a host's: units and
  /// savepoints then do nothing.
  SqliteConnection(sqlite3* handle, std::string target, bool ownsWork);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection() override;

  const std::string& connectionString() const override;
  std::vector<std::filesystem::path> files() const override;
  std::int64_t execute(const Sql& statement) override;
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
