#include "support/test_database.h"

#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "erp/schema.h"
#include "support/recording_connection.h"
#include "support/server_texts.h"

#include <cstdlib>
#include <string_view>
#include <utility>

namespace qx {
namespace {

bool wantsServer() {
  const char* const kind = std::getenv("QXIMPORTJOB_TEST_ERP");
  return kind != nullptr && std::string_view(kind) == "server";
}

} // namespace

TestDatabase::TestDatabase(std::string file)
    : file_(std::move(file)), schema_(wantsServer() ? std::make_unique<TestSchema>() : nullptr) {}

std::shared_ptr<Connection> TestDatabase::create() {
  std::shared_ptr<Connection> database =
      schema_ ? OdbcDatabase(erp::schemaNames()).create(schema_->connectionString())
              : SqliteDatabase().create(file_);
  WorkUnit unit(*database);
  erp::createSchema(*database);
  unit.commit();
  return withServerTexts(database);
}

std::unique_ptr<Connection> TestDatabase::another() const {
  return schema_ ? OdbcDatabase(erp::schemaNames()).open(schema_->connectionString())
                 : SqliteDatabase().open(file_);
}

std::shared_ptr<Connection> TestDatabase::host() const {
  if (!schema_) return SqliteDatabase::openAsHost(file_);
  return std::make_shared<RecordingConnection>(another(), true);
}

} // namespace qx
