// The state that a connection and its record sets share.
#pragma once

#include "adapters/sqlite/statement_cache.h"
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

/// The database handle with its compiled statements and its busy handler.
class ConnectionState {
  // Declared first, so that the statements are destroyed before the database.
  DatabaseHandle database_;
  StatementCache statements_{database_};
  BusyHandler busy_;
  bool ownsWork_;
  bool reading_ = false;

public:
  ConnectionState(sqlite3* handle, std::string target, bool ownsWork);
  ConnectionState(const ConnectionState&) = delete;
  ConnectionState& operator=(const ConnectionState&) = delete;
  ~ConnectionState() = default;

  DatabaseHandle& database() { return database_; }
  StatementCache& statements() { return statements_; }
  bool ownsWork() const { return ownsWork_; }
  BusyHandler& busy() { return busy_; }

  /// Runs a statement without rows. Returns the number of changed rows.
  std::int64_t run(PreparedStatement& statement);
  void interrupt() noexcept;
  std::int64_t lastRowId() const;
  bool reading() const { return reading_; }
  void setReading(bool reading) { reading_ = reading; }
  /// The absolute path of the database, "" when it has no file.
  std::string file() const;
  /// Whether the file was removed or replaced since it was opened.
  bool moved() const;
  /// Compiles one of the fixed transaction statements unless already done.
  void prepare(PreparedStatement& cached, const char* text);
  /// Runs one of them.
  void control(PreparedStatement& cached, const char* text);

  PreparedStatement begin, beginRead, commit, rollback, save, release, rollbackTo;
};

} // namespace qx::sqlite
