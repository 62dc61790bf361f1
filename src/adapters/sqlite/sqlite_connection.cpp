#include "adapters/sqlite/sqlite_connection.h"

#include "adapters/sqlite/connection_state.h"
#include "adapters/sqlite/sqlite_bulk_staging.h"
#include "adapters/sqlite/sqlite_maintenance.h"
#include "adapters/sqlite/sqlite_recordset.h"
#include "adapters/sqlite/upsert.h"

#include <stdexcept>
#include <thread>
#include <utility>

namespace qx {

using sqlite::ConnectionState;
using sqlite::PreparedStatement;

namespace {

/// Gives up at once.
class NoWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds /*waited*/) override { return false; }
};

/// Whatever is written to a removed file is lost with the connection.
void requireFile(const ConnectionState& state) {
  if (state.moved())
    throw StoreError("Die Datenbankdatei " + state.file() +
                         " wurde entfernt oder ersetzt. Schließen Sie das Programm und öffnen Sie es neu.",
                     0);
}

/// Waits between attempts, not inside one: the caller's wait may use the connection.
void beginWith(ConnectionState& state, BusyWait& wait) {
  constexpr std::chrono::milliseconds pollInterval{2};
  const auto start = std::chrono::steady_clock::now();
  NoWait noWait;
  while (true) {
    state.busy().setWait(&noWait);
    try {
      state.control(state.begin, "BEGIN IMMEDIATE");
      state.busy().setWait(nullptr);
      return;
    } catch (const BusyError&) {
      state.busy().setWait(nullptr);
      const auto waited = std::chrono::steady_clock::now() - start;
      if (!wait.goOn(std::chrono::duration_cast<std::chrono::milliseconds>(waited))) throw;
    } catch (...) {
      state.busy().setWait(nullptr);
      throw;
    }
    std::this_thread::sleep_for(pollInterval);
  }
}

} // namespace

SqliteConnection::SqliteConnection(sqlite3* handle, std::string target, WorkOwner workOwner)
    : state_(
          std::make_unique<ConnectionState>(handle, std::move(target), workOwner == WorkOwner::Component)) {}

SqliteConnection::~SqliteConnection() = default;

const std::string& SqliteConnection::connectionString() const { return state_->database().target(); }

std::vector<std::filesystem::path> SqliteConnection::files() const {
  const std::string file = state_->file();
  if (file.empty()) return {};
  return {file, file + "-wal", file + "-shm", file + "-journal"};
}

std::int64_t SqliteConnection::execute(const Sql& statement) {
  PreparedStatement& prepared = state_->statements().plain(statement);
  prepared.bindAll(statement.values());
  return state_->run(prepared);
}

void SqliteConnection::put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  insert(table, sqlite::upsert(table, row, keys));
}

std::unique_ptr<BulkStaging> SqliteConnection::bulkStaging() {
  return std::make_unique<sqlite::SqliteBulkStaging>(*this);
}

std::unique_ptr<Maintenance> SqliteConnection::maintenance() {
  return std::make_unique<sqlite::SqliteMaintenance>(*this, state_->database());
}

std::vector<std::string> SqliteConnection::tableNames() {
  // No pattern: the underscore would be a wildcard.
  const auto rows = open(sql("SELECT name FROM sqlite_master WHERE type IN ('table', 'view') AND "
                             "substr(name, 1, 7) <> 'sqlite_'"_sql));
  std::vector<std::string> names;
  for (; !rows->eof(); rows->moveNext()) names.push_back(rows->text("name"));
  return names;
}

std::string_view SqliteConnection::rowKey() const { return "rowid"; }

std::unique_ptr<Recordset> SqliteConnection::open(const Sql& statement) {
  return std::make_unique<sqlite::FetchedRecordset>(*state_, statement);
}

std::unique_ptr<Recordset> SqliteConnection::openKeyset(const Sql& statement) {
  return std::make_unique<sqlite::KeysetRecordset>(*state_, statement);
}

std::unique_ptr<Recordset> SqliteConnection::openStream(const Sql& statement) {
  return std::make_unique<sqlite::StreamRecordset>(*state_, statement);
}

bool SqliteConnection::ownsWork() const { return state_->ownsWork(); }

bool SqliteConnection::inWork() const {
  return state_->database().unitBegun() && !state_->database().unitLost();
}

void SqliteConnection::beginWork(BusyWait* wait) {
  if (!state_->ownsWork()) return;
  state_->database().requireUnit();
  if (state_->database().unitBegun()) throw std::logic_error("a unit of work is already open");
  requireFile(*state_);
  // Compiled beforehand: a rollback must not depend on free memory.
  state_->prepare(state_->rollback, "ROLLBACK");
  if (wait == nullptr)
    state_->control(state_->begin, "BEGIN IMMEDIATE");
  else
    beginWith(*state_, *wait);
  state_->database().beginUnit();
}

void SqliteConnection::commitWork() {
  if (!state_->database().unitBegun()) return;
  try {
    state_->control(state_->commit, "COMMIT");
  } catch (...) {
    rollbackWork();
    throw;
  }
  state_->database().endUnit();
}

void SqliteConnection::rollbackWork() noexcept {
  if (!state_->database().unitBegun()) return;
  undoUnit();
  state_->database().endUnit();
}

void SqliteConnection::undoUnit() noexcept {
  try {
    state_->control(state_->rollback, "ROLLBACK");
  } catch (const std::exception&) {
    // SQLite has already rolled back; there is nothing left to undo.
  }
}

void SqliteConnection::beginReading() {
  if (!state_->ownsWork() || state_->database().unitBegun() || state_->reading()) return;
  state_->control(state_->beginRead, "BEGIN DEFERRED");
  state_->setReading(true);
}

void SqliteConnection::endReading() noexcept {
  if (!state_->reading()) return;
  state_->setReading(false);
  try {
    state_->control(state_->rollback, "ROLLBACK");
  } catch (const std::exception&) {
    // A failed read may already have ended it.
  }
}

void SqliteConnection::interrupt() noexcept { state_->interrupt(); }

void SqliteConnection::setSavepoint() {
  if (!state_->database().unitBegun()) return;
  state_->prepare(state_->rollbackTo, "ROLLBACK TO part");
  state_->prepare(state_->release, "RELEASE part");
  state_->control(state_->save, "SAVEPOINT part");
}

void SqliteConnection::releaseSavepoint() {
  if (state_->database().unitBegun()) state_->control(state_->release, "RELEASE part");
}

void SqliteConnection::rollbackToSavepoint() noexcept {
  if (!state_->database().unitBegun()) return;
  try {
    state_->control(state_->rollbackTo, "ROLLBACK TO part");
    state_->control(state_->release, "RELEASE part");
  } catch (const std::exception&) {
    // Without its savepoint the unit may be half written: it is lost as a whole.
    undoUnit();
  }
}

} // namespace qx
