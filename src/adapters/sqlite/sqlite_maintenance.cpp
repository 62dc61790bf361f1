#include "adapters/sqlite/sqlite_maintenance.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/translation.h"
#include "adapters/sqlite/backup_file.h"
#include "adapters/sqlite/database_handle.h"
#include "adapters/sqlite/sqlite_database.h"
#include "adapters/sqlite/sqlite_error.h"
#include "platform/database_error.h"
#include "platform/path_text.h"

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx::sqlite {
namespace {

struct CopyHandleCloser {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using CopyHandle = std::unique_ptr<sqlite3, CopyHandleCloser>;

CopyHandle openForCopy(const std::string& file, int access) {
  sqlite3* raw = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &raw, access | SQLITE_OPEN_NOMUTEX, nullptr);
  CopyHandle handle(raw);
  if (code != SQLITE_OK) raiseOpenError(code, file, raw == nullptr ? "out of memory" : sqlite3_errmsg(raw));
  sqlite3_extended_result_codes(raw, 1);
  constexpr int busyMilliseconds = 60000;
  sqlite3_busy_timeout(raw, busyMilliseconds);
  return handle;
}

/// In one step, so that the copy shows one moment however much others write meanwhile.
void copyAll(sqlite3* from, sqlite3* to, const std::string& target) {
  constexpr int allPages = -1;
  sqlite3_backup* const copy = sqlite3_backup_init(to, "main", from, "main");
  if (copy == nullptr) raiseLastError(to, target);
  sqlite3_backup_step(copy, allPages);
  if (sqlite3_backup_finish(copy) != SQLITE_OK) raiseLastError(to, target);
}

std::string quotedName(std::string_view identifier) {
  return relational::quotedName(identifier, relational::sqliteDialect);
}

/// The names of the columns of a table, quoted and separated by commas.
std::string columnsOf(Connection& connection, std::string_view table) {
  const auto rows = connection.open(sql("SELECT * FROM "_sql, name(table), " WHERE 0 = 1"_sql));
  std::string names;
  for (std::size_t i = 0; i < rows->fieldCount(); ++i)
    names += (i == 0 ? "" : ", ") + quotedName(rows->fieldName(i));
  return names;
}

} // namespace

void SqliteMaintenance::copyTo(const std::filesystem::path& file, ExistingFile existing) {
  BackupFile backup(file, existing, connection_.files());
  // A handle of its own: from a connection inside a unit nothing can be copied.
  const CopyHandle from = openForCopy(textOf(connection_.files().front()), SQLITE_OPEN_READONLY);
  {
    const CopyHandle to = openForCopy(textOf(backup.written()), SQLITE_OPEN_READWRITE);
    copyAll(from.get(), to.get(), textOf(file));
  }
  backup.finish();
}

bool SqliteMaintenance::markedByOther() {
  const auto mark = connection_.open(sql("PRAGMA application_id"_sql))->value(0).integer().value_or(0);
  return mark != 0 && mark != SqliteDatabase::applicationId;
}

void SqliteMaintenance::mark() {
  run("PRAGMA application_id = " + std::to_string(SqliteDatabase::applicationId));
}

Definition SqliteMaintenance::compare(std::string_view table, const CreateTable& create) {
  return compareText(table, create(table));
}

Definition SqliteMaintenance::compareIndex(std::string_view index, std::string_view table,
                                           const CreateIndex& create) {
  return compareText(index, create(index, table));
}

Definition SqliteMaintenance::compareText(std::string_view name, const Sql& create) {
  const auto stored =
      connection_.open(sql("SELECT sql FROM sqlite_master WHERE name = '"_sql, value(name), "'"_sql));
  if (stored->eof()) return Definition::Missing;
  return stored->text("sql") == relational::translate(create, relational::sqliteDialect)
             ? Definition::Equal
             : Definition::Different;
}

void SqliteMaintenance::redefine(std::string_view table, const CreateTable& create) {
  const std::string interim = "neu_" + std::string(table);
  std::vector<std::string> attached;
  const auto rows = connection_.open(sql("SELECT sql FROM sqlite_master WHERE tbl_name = '"_sql, value(table),
                                         "' AND type IN ('index', 'trigger') AND sql IS NOT NULL"_sql));
  for (; !rows->eof(); rows->moveNext()) attached.push_back(rows->text("sql"));
  const std::string columns = columnsOf(connection_, table);

  connection_.execute(create(interim));
  run("INSERT INTO " + quotedName(interim) + " (rowid, " + columns + ") SELECT rowid, " + columns + " FROM " +
      quotedName(table) + " ORDER BY rowid");
  connection_.execute(sql("DROP TABLE "_sql, name(table)));
  // Otherwise the renaming would rewrite views and triggers, or fail for one that names the dropped table.
  run("PRAGMA legacy_alter_table = ON");
  connection_.execute(sql("ALTER TABLE "_sql, name(interim), " RENAME TO "_sql, name(table)));
  run("PRAGMA legacy_alter_table = OFF");
  for (const std::string& statement : attached) run(statement);
}

/// For texts that only the database itself can give: names of its columns, and its own definitions.
void SqliteMaintenance::run(const std::string& statement) const {
  database_.check(sqlite3_exec(database_.get(), statement.c_str(), nullptr, nullptr, nullptr));
}

} // namespace qx::sqlite
