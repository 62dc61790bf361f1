#include "adapters/sqlite/sqlite_connection.h"

#include "adapters/sqlite/sqlite_bulk_staging.h"
#include "adapters/sqlite/sqlite_driver.h"
#include "adapters/sqlite/sqlite_maintenance.h"
#include "platform/path_text.h"

#include <stdexcept>
#include <thread>
#include <utility>

namespace qx {

using sqlite::SqliteDriver;

namespace {

/// Gives up at once.
class NoWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds /*waited*/) override { return false; }
};

/// Whatever is written to a removed file is lost with the connection.
void requireFile(const SqliteDriver& driver) {
  if (driver.moved())
    throw StoreError("Die Datenbankdatei " + driver.file() +
                         " wurde entfernt oder ersetzt. Schließen Sie das Programm und öffnen Sie es neu.",
                     0);
}

} // namespace

SqliteConnection::SqliteConnection(sqlite3* handle, std::string target, WorkOwner workOwner)
    : SqliteConnection(std::make_unique<SqliteDriver>(handle, std::move(target)), workOwner) {}

SqliteConnection::SqliteConnection(std::unique_ptr<SqliteDriver> driver, WorkOwner workOwner)
    : ConnectionBase(std::move(driver)), driver_(dynamic_cast<SqliteDriver&>(ConnectionBase::driver())),
      ownsWork_(workOwner == WorkOwner::Component) {}

SqliteConnection::~SqliteConnection() = default;

void SqliteConnection::watchFile(const sqlite::FileStamp& before) { driver_.database().watch(before); }

const std::string& SqliteConnection::connectionString() const { return driver_.database().target(); }

std::vector<std::filesystem::path> SqliteConnection::files() const {
  const std::string file = driver_.file();
  if (file.empty()) return {};
  return {pathOf(file), pathOf(file + "-wal"), pathOf(file + "-shm"), pathOf(file + "-journal")};
}

void SqliteConnection::prepare(Control& control, const char* text) {
  if (!control)
    control =
        std::make_unique<sqlite::SqliteStatement>(driver_.database(), text, sqlite::StatementLife::Cached);
}

void SqliteConnection::run(Control& control, const char* text) {
  prepare(control, text);
  control->run();
}

/// Waits between attempts, not inside one: the caller's wait may use the connection.
void SqliteConnection::beginWith(BusyWait& wait) {
  constexpr std::chrono::milliseconds pollInterval{2};
  const auto start = std::chrono::steady_clock::now();
  NoWait noWait;
  while (true) {
    driver_.busy().setWait(&noWait);
    try {
      run(begin_, "BEGIN IMMEDIATE");
      driver_.busy().setWait(nullptr);
      return;
    } catch (const BusyError&) {
      driver_.busy().setWait(nullptr);
      const auto waited = std::chrono::steady_clock::now() - start;
      if (!wait.goOn(std::chrono::duration_cast<std::chrono::milliseconds>(waited))) throw;
    } catch (...) {
      driver_.busy().setWait(nullptr);
      throw;
    }
    std::this_thread::sleep_for(pollInterval);
  }
}

std::unique_ptr<BulkStaging> SqliteConnection::bulkStaging() {
  return std::make_unique<sqlite::SqliteBulkStaging>(*this, driver_);
}

std::unique_ptr<Maintenance> SqliteConnection::maintenance() {
  return std::make_unique<sqlite::SqliteMaintenance>(*this, driver_.database());
}

std::vector<std::string> SqliteConnection::tableNames() {
  // No pattern: the underscore would be a wildcard.
  const auto rows = open(sql("SELECT name FROM sqlite_master WHERE type IN ('table', 'view') AND "
                             "substr(name, 1, 7) <> 'sqlite_'"_sql));
  std::vector<std::string> names;
  for (; !rows->eof(); rows->moveNext()) names.push_back(rows->text("name"));
  return names;
}

bool SqliteConnection::ownsWork() const { return ownsWork_; }

bool SqliteConnection::inWork() const {
  return driver_.database().unitBegun() && !driver_.database().unitLost() && !groupLost();
}

void SqliteConnection::beginWork(BusyWait* wait) {
  if (!ownsWork_) return;
  driver_.database().requireUnit();
  if (driver_.database().unitBegun()) throw std::logic_error("a unit of work is already open");
  requireFile(driver_);
  // Compiled beforehand: a rollback must not depend on free memory.
  prepare(rollback_, "ROLLBACK");
  if (wait == nullptr)
    run(begin_, "BEGIN IMMEDIATE");
  else
    beginWith(*wait);
  driver_.database().beginUnit();
  endGroup();
}

void SqliteConnection::commitWork() {
  if (!driver_.database().unitBegun()) return;
  try {
    finishGroup();
    run(commit_, "COMMIT");
  } catch (...) {
    rollbackWork();
    throw;
  }
  driver_.database().endUnit();
  endGroup();
}

void SqliteConnection::rollbackWork() noexcept {
  if (!driver_.database().unitBegun()) return;
  endGroup();
  undoUnit();
  driver_.database().endUnit();
}

void SqliteConnection::undoUnit() noexcept {
  try {
    run(rollback_, "ROLLBACK");
  } catch (const std::exception&) {
    // SQLite has already rolled back; there is nothing left to undo.
  }
}

void SqliteConnection::beginReading() {
  if (!ownsWork_ || driver_.database().unitBegun() || reading_) return;
  run(beginRead_, "BEGIN DEFERRED");
  reading_ = true;
}

void SqliteConnection::endReading() noexcept {
  if (!reading_) return;
  reading_ = false;
  try {
    run(rollback_, "ROLLBACK");
  } catch (const std::exception&) {
    // A failed read may already have ended it.
  }
}

void SqliteConnection::interrupt() noexcept { driver_.interrupt(); }

void SqliteConnection::setRealSavepoint() {
  if (!driver_.database().unitBegun()) return;
  prepare(rollbackTo_, "ROLLBACK TO part");
  prepare(release_, "RELEASE part");
  run(save_, "SAVEPOINT part");
}

void SqliteConnection::releaseRealSavepoint() {
  if (driver_.database().unitBegun()) run(release_, "RELEASE part");
}

void SqliteConnection::undoToRealSavepoint() noexcept {
  if (!driver_.database().unitBegun()) return;
  try {
    run(rollbackTo_, "ROLLBACK TO part");
    run(release_, "RELEASE part");
  } catch (const std::exception&) {
    // Without its savepoint the unit may be half written: it is lost as a whole.
    undoUnit();
  }
}

} // namespace qx
