#include "adapters/odbc/odbc_connection.h"

#include "adapters/odbc/odbc_driver.h"
#include "adapters/odbc/server_maintenance.h"
#include "adapters/sql/temporary_staging.h"

#include <utility>

namespace qx {

OdbcConnection::OdbcConnection(std::unique_ptr<odbc::OdbcDriver> driver, relational::Spelling spelling)
    : ConnectionBase(std::move(driver), std::move(spelling)),
      odbc_(dynamic_cast<odbc::OdbcDriver&>(this->driver())) {}

// The statements that the base still holds end with the session, without a word to the server for each.
OdbcConnection::~OdbcConnection() { odbc_.disconnect(); }

const std::string& OdbcConnection::connectionString() const { return odbc_.name(); }

std::vector<std::string> OdbcConnection::tableNames() { return odbc_.tableNames(); }

std::unique_ptr<BulkStaging> OdbcConnection::bulkStaging() {
  return std::make_unique<relational::TemporaryStaging>(*this);
}

std::unique_ptr<Maintenance> OdbcConnection::maintenance() {
  return std::make_unique<odbc::ServerMaintenance>(*this, odbc_);
}

bool OdbcConnection::inWork() const { return odbc_.inUnit() && !odbc_.unitLost() && !groupLost(); }

void OdbcConnection::beginWork(BusyWait* wait) {
  odbc_.begin(wait);
  endGroup();
}

void OdbcConnection::commitWork() {
  try {
    finishGroup();
    odbc_.commit();
  } catch (...) {
    rollbackWork();
    throw;
  }
  endGroup();
}

void OdbcConnection::rollbackWork() noexcept {
  endGroup();
  if (odbc_.inUnit()) odbc_.rollback();
}

void OdbcConnection::beginReading() { odbc_.beginReading(); }

void OdbcConnection::endReading() noexcept { odbc_.endReading(); }

void OdbcConnection::interrupt() noexcept { odbc_.interrupt(); }

void OdbcConnection::setRealSavepoint() { odbc_.setSavepoint(); }

void OdbcConnection::releaseRealSavepoint() { odbc_.releaseSavepoint(); }

void OdbcConnection::undoToRealSavepoint() noexcept { odbc_.rollbackToSavepoint(); }

} // namespace qx
