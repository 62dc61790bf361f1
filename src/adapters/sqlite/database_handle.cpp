#include "adapters/sqlite/database_handle.h"

#include "adapters/sqlite/sqlite_error.h"
#include "platform/database_error.h"

#include <sqlite3.h>

#include <utility>

namespace qx::sqlite {

DatabaseHandle::DatabaseHandle(sqlite3* handle, std::string target)
    : handle_(handle), target_(std::move(target)) {}

DatabaseHandle::~DatabaseHandle() { sqlite3_close_v2(handle_); }

bool DatabaseHandle::unitLost() const { return unitBegun_ && sqlite3_get_autocommit(handle_) != 0; }

void DatabaseHandle::requireUnit() const {
  if (unitLost()) throw WorkLostError("the database rolled back the unit of work", SQLITE_ABORT_ROLLBACK);
}

void DatabaseHandle::check(int code) const {
  if (code != SQLITE_OK) fail();
}

void DatabaseHandle::fail() const { raiseLastError(handle_, target_, unitBegun_); }

void DatabaseHandle::failForMemory() const { throw StoreError(target_ + ": out of memory", SQLITE_NOMEM); }

} // namespace qx::sqlite
