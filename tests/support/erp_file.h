// The tables of the standalone ERP in a file of their own, with fakes for everything else.
#pragma once

#include "adapters/sqlite/sqlite_database.h"
#include "erp/schema.h"
#include "support/database_access.h"
#include "support/fake_session.h"
#include "support/temporary_folder.h"

#include <memory>
#include <string>
#include <string_view>

namespace qx {

/// `FakeWorld` on a real database. Link `qx_sqlite` and `qx_erp` to use it.
struct ErpFile : FakeWorld, DatabaseAccess {
  TemporaryFolder folder;
  std::string path = (folder.path() / "erp.db").string();

  ErpFile() {
    connect(SqliteDatabase().create(path));
    WorkUnit unit(connection());
    erp::createSchema(connection());
    unit.commit();
  }

  void connect(std::shared_ptr<Connection> database) {
    environment.connection = std::move(database);
    session->database = environment.connection;
  }
  Connection& connection() override { return *environment.connection; }
  /// Another program's connection to the same file.
  std::unique_ptr<Connection> secondConnection() const { return SqliteDatabase().open(path); }

  void set(std::string_view key, std::string_view value, std::string_view section = "ImportJob2") {
    session->SaveSetting(section, key, value);
  }
};

} // namespace qx
