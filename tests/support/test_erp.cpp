#include "support/test_erp.h"

#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "erp/base_data.h"
#include "erp/schema.h"

#include <cstdlib>
#include <string_view>

namespace qx {
namespace {

bool onServer() {
  const char* const kind = std::getenv("QXIMPORTJOB_TEST_ERP");
  return kind != nullptr && std::string_view(kind) == "server";
}

std::shared_ptr<Connection> createdDatabase(const std::string& file, const TestSchema* schema) {
  std::shared_ptr<Connection> database =
      schema == nullptr ? SqliteDatabase().create(file)
                        : OdbcDatabase(erp::schemaNames()).create(schema->connectionString());
  WorkUnit unit(*database);
  erp::createSchema(*database);
  erp::fillBaseData(*database);
  unit.commit();
  return database;
}

} // namespace

TestErp::TestErp()
    : schema(onServer() ? std::make_unique<TestSchema>() : nullptr),
      database(createdDatabase(file, schema.get())),
      components(database, sessionClock, desktop, diagnostics, identity,
                 {"pruefer", std::nullopt, folder.path().string()}),
      environment{components, desktop,     jobView,  clock,    guids,   localSettings,
                  iniFile,    diagnostics, liveness, database, nullptr, ""} {
  environment.session = components.createSession();
  environment.session->Connect("", "");
}

TestErp::~TestErp() = default;

std::unique_ptr<Connection> TestErp::secondConnection() const {
  return schema ? OdbcDatabase(erp::schemaNames()).open(schema->connectionString())
                : SqliteDatabase().open(file);
}

} // namespace qx
