#include "adapters/sqlite/sqlite_database.h"

#include "adapters/sqlite/sqlite_connection.h"
#include "adapters/sqlite/sqlite_error.h"
#include "platform/database_error.h"

#include <sqlite3.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace qx {
namespace {

namespace fs = std::filesystem;

struct HandleCloser {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using Handle = std::unique_ptr<sqlite3, HandleCloser>;

void check(sqlite3* handle, int code, const std::string& target) {
  if (code != SQLITE_OK) sqlite::raiseLastError(handle, target, false);
}

/// Texts are read as they are stored.
void requireUtf8(sqlite3* handle, const std::string& target) {
  std::string encoding;
  const auto keep = [](void* into, int /*count*/, char** values, char** /*names*/) {
    static_cast<std::string*>(into)->assign(values[0]);
    return 0;
  };
  check(handle, sqlite3_exec(handle, "PRAGMA encoding", keep, &encoding, nullptr), target);
  if (encoding != "UTF-8")
    throw StoreError(target + ": the texts of the database are stored as " + encoding +
                         "; only databases in UTF-8 can be used",
                     0);
}

void configure(sqlite3* handle, const std::string& target) {
  sqlite3_extended_result_codes(handle, 1);
  // An unknown column in double quotes must be an error, not a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_busy_timeout(handle, 60000);
  // Reading the schema first tells a file that is not a database from one that is.
  check(handle, sqlite3_exec(handle, "PRAGMA schema_version", nullptr, nullptr, nullptr), target);
  // SQLite's check of a page's cells when it is read finds some damage that would look like missing rows.
  check(handle,
        sqlite3_exec(handle, "PRAGMA synchronous=FULL; PRAGMA cache_size=-32000; PRAGMA cell_size_check=ON;",
                     nullptr, nullptr, nullptr),
        target);
  requireUtf8(handle, target);
}

/// A savepoint keeps copies of the pages that it changes; beyond 64 KiB SQLite would spill them to temporary
/// files, which costs a run half its time. One job changes few pages, so they stay in memory. (Limits between
/// 128 KiB and none fail: an overflow is written in one piece, of which SQLite's file layer takes 17 bits of
/// length.) Once per process and before SQLite starts; in a process that has already started it, the default
/// stays.
void keepSavepointsInMemory() {
  constexpr int never = -1;
  [[maybe_unused]] static const int configured = sqlite3_config(SQLITE_CONFIG_STMTJRNL_SPILL, never);
}

Handle openHandle(const std::string& target, int flags) {
  keepSavepointsInMemory();
  sqlite3* raw = nullptr;
  // The name is that of a file, also where SQLite would see an address or a database in memory in it.
  const std::string file = fs::absolute(target).string();
  const int code = sqlite3_open_v2(file.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Handle handle(raw);
  if (code != SQLITE_OK)
    sqlite::raiseOpenError(code, target, raw == nullptr ? "out of memory" : sqlite3_errmsg(raw));
  configure(raw, target);
  return handle;
}

std::unique_ptr<Connection> openExisting(std::string_view path, bool ownsWork) {
  const std::string target(path);
  std::error_code ignored;
  if (fs::is_directory(target, ignored)) throw StoreError(target + ": is a directory", SQLITE_CANTOPEN);
  if (!fs::exists(target, ignored)) throw StoreError(target + ": there is no such file", SQLITE_CANTOPEN);
  Handle handle = openHandle(target, SQLITE_OPEN_READWRITE);
  return std::make_unique<SqliteConnection>(handle.release(), target, ownsWork);
}

/// An empty file that only its owner reads: SQLite gives the files beside it the same permissions. One that
/// is there stays as it is.
void createPrivately(const std::string& target) {
  constexpr mode_t ownerOnly = 0600;
  const int file = ::open(target.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  if (file >= 0)
    close(file);
  else if (errno != EEXIST)
    throw StoreError(target + ": " + std::generic_category().message(errno), SQLITE_CANTOPEN);
}

} // namespace

std::unique_ptr<Connection> SqliteDatabase::open(std::string_view path) { return openExisting(path, true); }

std::unique_ptr<Connection> SqliteDatabase::openAsHost(std::string_view path) {
  return openExisting(path, false);
}

std::unique_ptr<Connection> SqliteDatabase::create(std::string_view path) {
  const std::string target(path);
  const fs::path folder = fs::path(target).parent_path();
  std::error_code error;
  if (!folder.empty()) fs::create_directories(folder, error);
  if (error) throw StoreError(folder.string() + ": " + error.message(), error.value());
  createPrivately(target);
  Handle handle = openHandle(target, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  // Write-ahead logging is a property of the file: readers never wait for a run.
  check(handle.get(), sqlite3_exec(handle.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr),
        target);
  // "qxij": by this mark in its header other programs can tell whose file it is.
  check(handle.get(),
        sqlite3_exec(handle.get(), "PRAGMA application_id=0x7178696A", nullptr, nullptr, nullptr), target);
  return std::make_unique<SqliteConnection>(handle.release(), target, true);
}

} // namespace qx
