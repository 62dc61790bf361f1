#include "support/test_erp.h"

#include "adapters/sqlite/sqlite_database.h"
#include "erp/base_data.h"
#include "erp/schema.h"

namespace qx {
namespace {

std::shared_ptr<Connection> createdDatabase(const std::string& file) {
  std::shared_ptr<Connection> database = SqliteDatabase().create(file);
  WorkUnit unit(*database);
  erp::createSchema(*database);
  erp::fillBaseData(*database);
  unit.commit();
  return database;
}

} // namespace

TestErp::TestErp()
    : database(createdDatabase(file)), components(database, sessionClock, desktop, diagnostics, identity,
                                                  {"pruefer", std::nullopt, folder.path().string()}),
      environment{components, desktop,     jobView,  clock,    guids,   localSettings,
                  iniFile,    diagnostics, liveness, database, nullptr, ""} {
  environment.session = components.createSession();
  environment.session->Connect("", "");
}

std::unique_ptr<Connection> TestErp::secondConnection() const { return SqliteDatabase().open(file); }

} // namespace qx
