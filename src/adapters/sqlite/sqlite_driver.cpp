#include "adapters/sqlite/sqlite_driver.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/select_parts.h"
#include "model/text.h"

#include <sqlite3.h>

#include <thread>
#include <utility>

namespace qx::sqlite {
namespace {

constexpr std::chrono::milliseconds pollInterval{2};
constexpr std::chrono::milliseconds defaultBusyLimit{60000};

} // namespace

void BusyHandler::install(sqlite3* database) { sqlite3_busy_handler(database, &BusyHandler::callback, this); }

int BusyHandler::callback(void* self, int count) {
  return static_cast<BusyHandler*>(self)->goOn(count) ? 1 : 0;
}

bool BusyHandler::goOn(int count) {
  const auto now = std::chrono::steady_clock::now();
  if (count == 0) start_ = now;
  const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(now - start_);
  const bool further = wait_ != nullptr ? wait_->goOn(waited) : waited < defaultBusyLimit;
  if (further) std::this_thread::sleep_for(pollInterval);
  return further;
}

SqliteDriver::SqliteDriver(sqlite3* handle, std::string target) : database_(handle, std::move(target)) {
  busy_.install(handle);
}

SqliteDriver::~SqliteDriver() = default;

const relational::Dialect& SqliteDriver::dialect() const { return relational::sqliteDialect; }

std::unique_ptr<relational::Statement> SqliteDriver::prepare(std::string_view text, StatementLife life) {
  return std::make_unique<SqliteStatement>(database_, text, life);
}

relational::TableKey SqliteDriver::keyOf(std::string_view table) {
  SqliteStatement info(database_, "SELECT name, type FROM pragma_table_info(?) WHERE pk > 0",
                       StatementLife::Once);
  const Value tableName(table);
  info.bind(0, tableName);
  const std::string rowKey(relational::sqliteDialect.rowKey);
  relational::TableKey key{rowKey, {}, {}};
  int count = 0;
  while (info.step()) {
    ++count;
    const std::string name = info.column(0, ColumnKind::Plain).text();
    const std::string type = info.column(1, ColumnKind::Plain).text();
    if (relational::findWord(type, "text") == 0) key.text = name;
    if (equalCodes(type, "integer")) key.identity = name;
  }
  return count == 1 ? key : relational::TableKey{rowKey, {}, {}};
}

std::optional<std::int64_t> SqliteDriver::insertRow(relational::Statement& insert) {
  if (insert.run() == 0) return std::nullopt;
  return sqlite3_last_insert_rowid(database_.get());
}

std::vector<std::string> SqliteDriver::triggeredTables() {
  if (!triggers_)
    triggers_ = prepare("SELECT tbl_name FROM sqlite_master WHERE type = 'trigger' UNION "
                        "SELECT tbl_name FROM sqlite_temp_master WHERE type = 'trigger'",
                        StatementLife::Cached);
  const relational::StatementUse use(*triggers_);
  std::vector<std::string> tables;
  while (triggers_->step()) tables.push_back(asciiLower(triggers_->column(0, ColumnKind::Plain).textView()));
  return tables;
}

void SqliteDriver::interrupt() noexcept { sqlite3_interrupt(database_.get()); }

bool SqliteDriver::moved() const {
  int moved = 0;
  return sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
         moved != 0;
}

std::string SqliteDriver::file() const {
  const char* const name = sqlite3_db_filename(database_.get(), "main");
  return name == nullptr ? "" : name;
}

} // namespace qx::sqlite
