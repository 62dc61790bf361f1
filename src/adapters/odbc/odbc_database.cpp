#include "adapters/odbc/odbc_database.h"

#include "adapters/odbc/connection_string.h"
#include "adapters/odbc/odbc_connection.h"
#include "adapters/odbc/odbc_driver.h"
#include "platform/database_error.h"

#include <stdexcept>
#include <utility>

namespace qx {
namespace {

odbc::ConnectionString readConnectionString(std::string_view text) {
  try {
    return odbc::ConnectionString(text);
  } catch (const std::invalid_argument& error) {
    throw StoreError("odbc: the connection string cannot be read: " + std::string(error.what()), 0);
  }
}

} // namespace

std::string OdbcDatabase::displayed(std::string_view connectionString) const {
  return odbc::ConnectionString(connectionString).displayed();
}

std::unique_ptr<Connection> OdbcDatabase::open(std::string_view connectionString) {
  return std::make_unique<OdbcConnection>(
      std::make_unique<odbc::OdbcDriver>(readConnectionString(connectionString)),
      relational::Spelling(columnNames_));
}

std::unique_ptr<Connection> OdbcDatabase::create(std::string_view connectionString) {
  auto driver = std::make_unique<odbc::OdbcDriver>(readConnectionString(connectionString));
  for (const std::string_view text : driver->dialect().setUp) {
    const auto statement = driver->prepare(text, relational::StatementLife::Once);
    try {
      statement->run();
    } catch (const StatementError&) {
      // Another program may have made the same at this moment; then there is nothing left to do.
      statement->run();
    }
  }
  return std::make_unique<OdbcConnection>(std::move(driver), relational::Spelling(columnNames_));
}

} // namespace qx
