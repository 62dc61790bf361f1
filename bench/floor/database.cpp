#include "floor/database.h"

#include <sqlite3.h>

#include <stdexcept>

namespace qx::bench {
namespace {

void check(sqlite3* database, int code) {
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database));
}

} // namespace

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(sqlite3* database, std::string_view text) {
  sqlite3_stmt* raw = nullptr;
  check(database, sqlite3_prepare_v3(database, text.data(), static_cast<int>(text.size()),
                                     SQLITE_PREPARE_PERSISTENT, &raw, nullptr));
  statement_.reset(raw);
}

Statement& Statement::bind(int place, std::string_view text) {
  // A view of nothing is the empty text here; a null pointer would bind null.
  const char* data = text.data() == nullptr ? "" : text.data();
  sqlite3_bind_text64(statement_.get(), place, data, text.size(), SQLITE_STATIC, SQLITE_UTF8);
  return *this;
}

Statement& Statement::bind(int place, std::int64_t number) {
  sqlite3_bind_int64(statement_.get(), place, number);
  return *this;
}

Statement& Statement::bind(int place, double number) {
  sqlite3_bind_double(statement_.get(), place, number);
  return *this;
}

Statement& Statement::bindColumn(int place, const Statement& from, int column) {
  sqlite3_bind_value(statement_.get(), place, sqlite3_column_value(from.statement_.get(), column));
  return *this;
}

Statement& Statement::bindNull(int place) {
  sqlite3_bind_null(statement_.get(), place);
  return *this;
}

Statement& Statement::bindOrNull(int place, std::string_view text) {
  return text.empty() ? bindNull(place) : bind(place, text);
}

bool Statement::step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(sqlite3_db_handle(statement_.get())));
  return false;
}

void Statement::reset() { sqlite3_reset(statement_.get()); }

void Statement::run() {
  while (step()) {
  }
  reset();
}

int Statement::columnCount() const { return sqlite3_column_count(statement_.get()); }

std::string_view Statement::columnName(int column) const {
  return sqlite3_column_name(statement_.get(), column);
}

std::string_view Statement::text(int column) const {
  const auto* data = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return data == nullptr ? std::string_view() : std::string_view(data, length);
}

std::int64_t Statement::integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }

double Statement::real(int column) const { return sqlite3_column_double(statement_.get(), column); }

bool Statement::isNull(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

void Database::Closer::operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }

Database::Database(const std::string& path) {
  sqlite3* raw = nullptr;
  const int code = sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
  handle_.reset(raw);
  check(raw, code);
  execute("PRAGMA synchronous=FULL");
  execute("PRAGMA cache_size=-32000");
}

void Database::execute(const char* text) {
  check(handle_.get(), sqlite3_exec(handle_.get(), text, nullptr, nullptr, nullptr));
}

std::int64_t Database::changes() const { return sqlite3_changes64(handle_.get()); }

} // namespace qx::bench
