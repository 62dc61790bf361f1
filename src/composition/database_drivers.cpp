#include "composition/database_drivers.h"

#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "erp/schema.h"
#include "program/program_error.h"

#include <algorithm>
#include <stdexcept>

namespace qx {

DatabaseDrivers::DatabaseDrivers() : columnNames_(erp::schemaNames()) {
  drivers_.push_back(
      {"odbc:", "odbc:Driver={PostgreSQL Unicode};Server=HOST;Port=5432;Database=NAME;UID=USER;PWD=PASSWORD",
       std::make_unique<OdbcDatabase>(columnNames_)});
  drivers_.push_back({"", "", std::make_unique<SqliteDatabase>()});
}

DatabaseTarget DatabaseDrivers::find(std::string_view target) const {
  const auto driver =
      std::ranges::find_if(drivers_, [&](const Driver& each) { return target.starts_with(each.scheme); });
  const std::string_view connectionString = target.substr(driver->scheme.size());
  try {
    return {*driver->database, std::string(connectionString),
            std::string(driver->scheme) + driver->database->displayed(connectionString)};
  } catch (const std::invalid_argument& error) {
    throw ProgramError(ExitCode::BadInput,
                       std::string(driver->scheme) +
                           ": the connection string cannot be read: " + error.what(),
                       "Write it like this: " + std::string(driver->form));
  }
}

} // namespace qx
