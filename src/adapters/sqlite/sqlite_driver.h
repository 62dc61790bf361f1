// SQLite behind the general half of a connection.
#pragma once

#include "adapters/sql/driver.h"
#include "adapters/sqlite/database_handle.h"
#include "adapters/sqlite/sqlite_statement.h"
#include "platform/database.h"

#include <chrono>
#include <string>

struct sqlite3;

namespace qx::sqlite {

/// SQLite's busy handler: decides whether to go on waiting for another program.
class BusyHandler {
public:
  void install(sqlite3* database);
  /// Sets the caller's wait for the following statements; null for the default limit.
  void setWait(BusyWait* wait) { wait_ = wait; }

private:
  static int callback(void* self, int count);
  bool goOn(int count);

  BusyWait* wait_ = nullptr;
  std::chrono::steady_clock::time_point start_;
};

/// The database handle with its busy handler.
class SqliteDriver final : public relational::Driver {
public:
  /// Takes ownership of the handle.
  SqliteDriver(sqlite3* handle, std::string target);
  SqliteDriver(const SqliteDriver&) = delete;
  SqliteDriver& operator=(const SqliteDriver&) = delete;
  ~SqliteDriver() override;

  const relational::Dialect& dialect() const override;
  std::unique_ptr<relational::Statement> prepare(std::string_view text, StatementLife life) override;
  relational::TableKey keyOf(std::string_view table) override;
  std::optional<std::int64_t> insertRow(relational::Statement& insert) override;
  std::vector<std::string> triggeredTables() override;

  DatabaseHandle& database() { return database_; }
  BusyHandler& busy() { return busy_; }
  void interrupt() noexcept;
  /// The absolute path of the database, "" when it has no file.
  std::string file() const;
  /// Whether the file was removed or replaced since it was opened.
  bool moved() const;

private:
  DatabaseHandle database_;
  BusyHandler busy_;
  std::unique_ptr<relational::Statement> triggers_;
};

} // namespace qx::sqlite
