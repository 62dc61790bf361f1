#include "adapters/sqlite/connection_state.h"

#include "adapters/sqlite/sqlite_error.h"

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

ConnectionState::ConnectionState(sqlite3* handle, std::string target, bool ownsWork)
    : handle_(handle), statements_(handle, std::move(target)), ownsWork_(ownsWork) {
  busy_.install(handle);
}

ConnectionState::~ConnectionState() {
  // The statements go first; a connection with statements left open would stay half open.
  for (PreparedStatement* statement : {&begin, &beginRead, &commit, &rollback, &save, &release, &rollbackTo})
    *statement = PreparedStatement();
  statements_ = StatementCache(nullptr, {});
  sqlite3_close_v2(handle_);
}

void ConnectionState::fail() {
  const bool workWasOpen = inWork_;
  if (inWork_ && sqlite3_get_autocommit(handle_) != 0) inWork_ = false;
  raiseLastError(handle_, target(), workWasOpen);
}

std::int64_t ConnectionState::run(PreparedStatement& statement) {
  const StatementUse use(statement);
  const std::int64_t before = sqlite3_total_changes64(handle_);
  int code = statement.step();
  while (code == SQLITE_ROW) code = statement.step();
  if (code != SQLITE_DONE) fail();
  return sqlite3_total_changes64(handle_) == before ? 0 : sqlite3_changes64(handle_);
}

bool ConnectionState::stepRow(PreparedStatement& statement) {
  const int code = statement.step();
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) fail();
  return false;
}

void ConnectionState::interrupt() noexcept { sqlite3_interrupt(handle_); }

std::int64_t ConnectionState::lastRowId() const { return sqlite3_last_insert_rowid(handle_); }

bool ConnectionState::moved() const {
  int moved = 0;
  return sqlite3_file_control(handle_, "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

std::string ConnectionState::file() const {
  const char* const name = sqlite3_db_filename(handle_, "main");
  return name == nullptr ? "" : name;
}

void ConnectionState::control(PreparedStatement& cached, const char* text) {
  if (!cached) cached = PreparedStatement(handle_, target(), text, true);
  run(cached);
}

} // namespace qx::sqlite
