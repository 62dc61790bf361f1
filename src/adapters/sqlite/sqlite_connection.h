// One connection to a SQLite database file.
#pragma once

#include "adapters/sql/connection_base.h"
#include "platform/database.h"

#include <memory>
#include <string>

struct sqlite3;

namespace qx {

namespace sqlite {
struct FileStamp;
class SqliteDriver;
class SqliteStatement;
} // namespace sqlite

/// Who begins and ends units of work on a connection; on a host's, units and savepoints do nothing.
enum class WorkOwner { Component, Host };

/// Implements the connection port on SQLite. A failed statement leaves the unit of work open unless its error
/// type says otherwise.
class SqliteConnection final : public relational::ConnectionBase {
public:
  /// Takes ownership of the handle.
  SqliteConnection(sqlite3* handle, std::string target, WorkOwner workOwner);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection() override;

  /// Reading raises `BusyError` when the file is no longer as it was.
  void watchFile(const sqlite::FileStamp& before);

  const std::string& connectionString() const override;
  std::vector<std::filesystem::path> files() const override;
  std::unique_ptr<BulkStaging> bulkStaging() override;
  std::unique_ptr<Maintenance> maintenance() override;
  std::vector<std::string> tableNames() override;
  bool ownsWork() const override;
  bool inWork() const override;
  void beginWork(BusyWait* wait) override;
  void commitWork() override;
  void rollbackWork() noexcept override;
  void beginReading() override;
  void endReading() noexcept override;
  void interrupt() noexcept override;

private:
  void setRealSavepoint() override;
  void releaseRealSavepoint() override;
  void undoToRealSavepoint() noexcept override;
  /// One of the fixed statements about units of work, compiled at its first use.
  using Control = std::unique_ptr<sqlite::SqliteStatement>;

  SqliteConnection(std::unique_ptr<sqlite::SqliteDriver> driver, WorkOwner workOwner);
  void prepare(Control& control, const char* text);
  void run(Control& control, const char* text);
  void beginWith(BusyWait& wait);
  void undoUnit() noexcept;

  sqlite::SqliteDriver& driver_; ///< owned by the base
  bool ownsWork_;
  bool reading_ = false;
  Control begin_, beginRead_, commit_, rollback_, save_, release_, rollbackTo_;
};

} // namespace qx
