#include "adapters/sqlite/sqlite_database.h"

#include "adapters/sqlite/sqlite_connection.h"
#include "adapters/sqlite/sqlite_error.h"
#include "platform/database_error.h"

#include <sqlite3.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
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

void configure(sqlite3* handle, const std::string& target) {
  sqlite3_extended_result_codes(handle, 1);
  // An unknown column in double quotes must be an error, not a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_busy_timeout(handle, 60000);
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

Handle openHandle(const std::string& target, int flags) {
  keepSavepointsInMemory();
  sqlite3* raw = nullptr;
  // The name is always that of a file, even if SQLite would take it for a URI or an in-memory database.
  const std::string file = fs::absolute(target).string();
  const int code = sqlite3_open_v2(file.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Handle handle(raw);
  if (code != SQLITE_OK)
    sqlite::raiseOpenError(code, target, raw == nullptr ? "out of memory" : sqlite3_errmsg(raw));
  configure(raw, target);
  return handle;
}

std::unique_ptr<Connection> openExisting(std::string_view path, WorkOwner workOwner) {
  const std::string target(path);
  std::error_code ignored;
  if (fs::is_directory(target, ignored)) throw StoreError(target + ": is a directory", SQLITE_CANTOPEN);
  if (!fs::exists(target, ignored)) throw StoreError(target + ": there is no such file", SQLITE_CANTOPEN);
  Handle handle = openHandle(target, SQLITE_OPEN_READWRITE);
  return std::make_unique<SqliteConnection>(handle.release(), target, workOwner);
}

[[noreturn]] void raiseOf(const fs::path& path, int error) {
  throw StoreError(path.string() + ": " + std::generic_category().message(error), SQLITE_CANTOPEN);
}

/// The permissions that are asked for, whatever the process's mask takes away.
void permit(const fs::path& path, mode_t mode) {
  if (chmod(path.c_str(), mode) != 0) raiseOf(path, errno);
}

void createFolders(const fs::path& folder, FileSharing sharing) {
  std::error_code unknown;
  if (folder.empty() || fs::exists(folder, unknown)) return;
  createFolders(folder.parent_path(), sharing);
  constexpr mode_t ownerOnly = 0700;
  // Journals, which each user creates anew, take the group of the folder.
  constexpr mode_t ownerAndGroup = 02770;
  if (mkdir(folder.c_str(), ownerOnly) == 0) {
    if (sharing == FileSharing::Group) permit(folder, ownerAndGroup);
  } else if (errno != EEXIST) {
    raiseOf(folder, errno);
  }
}

} // namespace

std::unique_ptr<Connection> SqliteDatabase::open(std::string_view path) {
  return openExisting(path, WorkOwner::Component);
}

std::unique_ptr<Connection> SqliteDatabase::openAsHost(std::string_view path) {
  return openExisting(path, WorkOwner::Host);
}

void SqliteDatabase::reserve(std::string_view path, FileSharing sharing) {
  const fs::path target(path);
  createFolders(fs::absolute(target).parent_path(), sharing);
  constexpr mode_t ownerOnly = 0600;
  constexpr mode_t ownerAndGroup = 0660;
  // SQLite gives its journals the same permissions.
  const int file = ::open(target.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  if (file < 0 && errno == EEXIST) return;
  if (file < 0) raiseOf(target, errno);
  close(file);
  if (sharing == FileSharing::Group) permit(target, ownerAndGroup);
}

std::unique_ptr<Connection> SqliteDatabase::create(std::string_view path) {
  const std::string target(path);
  reserve(target, FileSharing::Owner);
  Handle handle = openHandle(target, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  // Write-ahead logging, a property of the file: readers never wait for a run.
  check(handle.get(), sqlite3_exec(handle.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr),
        target);
  const std::string mark = "PRAGMA application_id=" + std::to_string(applicationId);
  check(handle.get(), sqlite3_exec(handle.get(), mark.c_str(), nullptr, nullptr, nullptr), target);
  return std::make_unique<SqliteConnection>(handle.release(), target, WorkOwner::Component);
}

} // namespace qx
