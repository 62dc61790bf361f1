#include "adapters/sqlite/connection_state.h"

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
    : database_(handle, std::move(target)), ownsWork_(ownsWork) {
  busy_.install(handle);
}

std::int64_t ConnectionState::run(PreparedStatement& statement) {
  const StatementUse use(statement);
  const std::int64_t before = sqlite3_total_changes64(database_.get());
  while (statement.step()) {
  }
  return sqlite3_total_changes64(database_.get()) == before ? 0 : sqlite3_changes64(database_.get());
}

void ConnectionState::interrupt() noexcept { sqlite3_interrupt(database_.get()); }

std::int64_t ConnectionState::lastRowId() const { return sqlite3_last_insert_rowid(database_.get()); }

bool ConnectionState::moved() const {
  int moved = 0;
  return sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
         moved != 0;
}

std::string ConnectionState::file() const {
  const char* const name = sqlite3_db_filename(database_.get(), "main");
  return name == nullptr ? "" : name;
}

void ConnectionState::prepare(PreparedStatement& cached, const char* text) {
  if (!cached) cached = PreparedStatement(database_, text, StatementLife::Cached);
}

void ConnectionState::control(PreparedStatement& cached, const char* text) {
  prepare(cached, text);
  run(cached);
}

} // namespace qx::sqlite
