#include "adapters/sqlite/sqlite_database.h"

#include "adapters/sqlite/database_handle.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "adapters/sqlite/sqlite_error.h"
#include "platform/database_error.h"
#include "platform/path_text.h"

#include <sqlite3.h>

#include <filesystem>
#include <ios>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace qx {
namespace {

namespace fs = std::filesystem;

struct HandleCloser {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using Handle = std::unique_ptr<sqlite3, HandleCloser>;

void check(sqlite3* handle, int code, const std::string& target) {
  if (code != SQLITE_OK) sqlite::raiseLastError(handle, target);
}

/// Texts are read without conversion, so the database must be in UTF-8.
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

constexpr int busyMilliseconds = 60000;

void configure(sqlite3* handle, const std::string& target) {
  sqlite3_extended_result_codes(handle, 1);
  // An unknown column in double quotes must be an error, not a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_busy_timeout(handle, busyMilliseconds);
  // Reading the schema detects a file that is not a database.
  check(handle, sqlite3_exec(handle, "PRAGMA schema_version", nullptr, nullptr, nullptr), target);
  // Checking the cells of every page read detects damage that would look like missing rows.
  check(handle,
        sqlite3_exec(handle, "PRAGMA synchronous=FULL; PRAGMA cache_size=-32000; PRAGMA cell_size_check=ON;",
                     nullptr, nullptr, nullptr),
        target);
  requireUtf8(handle, target);
}

/// A savepoint keeps copies of the pages that it changes; beyond 64 KiB SQLite would spill them to temporary
/// files, which costs a run half its time. One job changes few pages, so they stay in memory. (Limits between
/// 128 KiB and none fail: an overflow is written in one piece, of which SQLite's file layer takes 17 bits of
/// length.) Set once per process, before SQLite starts; afterwards it has no effect.
void keepSavepointsInMemory() {
  constexpr int never = -1;
  [[maybe_unused]] static const int configured = sqlite3_config(SQLITE_CONFIG_STMTJRNL_SPILL, never);
}

/// Nobody asks how much memory SQLite has, and the count costs a lock for each piece.
void leaveMemoryUncounted() {
  [[maybe_unused]] static const int configured = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

/// `name` is a full name.
Handle openHandle(const std::string& target, const std::string& name, int flags) {
  keepSavepointsInMemory();
  leaveMemoryUncounted();
  sqlite3* raw = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Handle handle(raw);
  if (code != SQLITE_OK)
    sqlite::raiseOpenError(code, target, raw == nullptr ? "out of memory" : sqlite3_errmsg(raw));
  configure(raw, target);
  return handle;
}

/// The absolute name for SQLite, which takes none of them for an in-memory database.
std::string fullName(const std::string& target) { return textOf(fs::absolute(pathOf(target))); }

/// The file's name for SQLite with the promise that nobody writes it.
std::string unchangingFile(const std::string& target) {
  constexpr std::string_view reserved = "%?#";
  std::ostringstream uri;
  const std::u8string name = fs::absolute(pathOf(target)).generic_u8string();
  uri << (name.starts_with(u8'/') ? "file://" : "file:///") << std::hex << std::uppercase;
  for (const char c : std::string(name.begin(), name.end()))
    if (reserved.find(c) == std::string_view::npos)
      uri << c;
    else
      uri << '%' << static_cast<int>(c);
  uri << "?immutable=1";
  return uri.str();
}

/// For a user who may only read. Where no other program has the file open, SQLite could not create the files
/// that readers and writers share: the file is then read as it is, and watched.
std::unique_ptr<SqliteConnection> openForReading(const std::string& target, WorkOwner workOwner) {
  const sqlite::FileStamp before = sqlite::FileStamp::of(pathOf(target));
  const auto connect = [&](const std::string& name, int flags) {
    return std::make_unique<SqliteConnection>(
        openHandle(target, name, SQLITE_OPEN_READONLY | flags).release(), target, workOwner);
  };
  try {
    return connect(fullName(target), 0);
  } catch (const StoreError&) {
    if (before.journal) throw;
  }
  auto connection = connect(unchangingFile(target), SQLITE_OPEN_URI);
  connection->watchFile(before);
  return connection;
}

/// Write-ahead logging, a property of the file: readers never wait for a run. SQLite does not wait by itself
/// for another program that creates the same file, since it has already read the file when it wants to write.
void logAhead(sqlite3* handle, const std::string& target) {
  constexpr int pauseMilliseconds = 5;
  for (int waited = 0;; waited += pauseMilliseconds) {
    const int code = sqlite3_exec(handle, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    const bool busy = (code & 0xff) == SQLITE_BUSY;
    if (!busy || waited >= busyMilliseconds) return check(handle, code, target);
    sqlite3_sleep(pauseMilliseconds);
  }
}

std::unique_ptr<Connection> openExisting(std::string_view path, WorkOwner workOwner) {
  const std::string target(path);
  const fs::path file = pathOf(target);
  std::error_code ignored;
  if (fs::is_directory(file, ignored)) throw StoreError(target + ": is a directory", SQLITE_CANTOPEN);
  if (!fs::exists(file, ignored)) throw StoreError(target + ": there is no such file", SQLITE_CANTOPEN);
  if (!mayWrite(file)) return openForReading(target, workOwner);
  Handle handle = openHandle(target, fullName(target), SQLITE_OPEN_READWRITE);
  return std::make_unique<SqliteConnection>(handle.release(), target, workOwner);
}

} // namespace

bool SqliteDatabase::exists(std::string_view path) const {
  std::error_code failure;
  const fs::file_status status = fs::status(pathOf(path), failure);
  if (fs::status_known(status)) return fs::exists(status);
  const bool closed = failure == std::errc::permission_denied;
  throw StoreError(std::string(path) + (closed ? ": its folder may not be entered: " : ": ") +
                       failure.message(),
                   SQLITE_CANTOPEN);
}

fs::path SqliteDatabase::folder(std::string_view path) const {
  return fs::absolute(pathOf(path)).parent_path();
}

std::unique_ptr<Connection> SqliteDatabase::open(std::string_view path) {
  return openExisting(path, WorkOwner::Component);
}

std::unique_ptr<Connection> SqliteDatabase::openAsHost(std::string_view path) {
  return openExisting(path, WorkOwner::Host);
}

void SqliteDatabase::reserve(std::string_view path, FileSharing sharing) {
  const fs::path target = pathOf(path);
  try {
    createFolders(fs::absolute(target).parent_path(), sharing);
    // SQLite gives its journals the same permissions.
    createEmptyFile(target, sharing);
  } catch (const std::system_error& failure) {
    throw StoreError(failure.what(), SQLITE_CANTOPEN);
  }
}

std::unique_ptr<Connection> SqliteDatabase::create(std::string_view path) {
  const std::string target(path);
  reserve(target, FileSharing::Owner);
  Handle handle = openHandle(target, fullName(target), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  logAhead(handle.get(), target);
  const std::string mark = "PRAGMA application_id=" + std::to_string(applicationId);
  check(handle.get(), sqlite3_exec(handle.get(), mark.c_str(), nullptr, nullptr, nullptr), target);
  return std::make_unique<SqliteConnection>(handle.release(), target, WorkOwner::Component);
}

} // namespace qx
