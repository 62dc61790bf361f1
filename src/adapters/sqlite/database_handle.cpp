#include "adapters/sqlite/database_handle.h"

#include "adapters/sqlite/sqlite_error.h"
#include "platform/database_error.h"
#include "platform/path_text.h"

#include <sqlite3.h>

#include <system_error>
#include <utility>

namespace qx::sqlite {

DatabaseHandle::DatabaseHandle(sqlite3* handle, std::string target)
    : handle_(handle), target_(std::move(target)) {}

DatabaseHandle::~DatabaseHandle() { sqlite3_close_v2(handle_); }

bool DatabaseHandle::unitLost() const { return unitBegun_ && sqlite3_get_autocommit(handle_) != 0; }

void DatabaseHandle::requireUnit() const {
  if (unitLost()) throw WorkLostError("the database rolled back the unit of work", SQLITE_ABORT_ROLLBACK);
}

FileStamp FileStamp::of(const std::filesystem::path& file) {
  std::error_code missing;
  std::filesystem::path journal = file;
  journal += "-wal";
  const auto length = std::filesystem::file_size(journal, missing);
  return {std::filesystem::last_write_time(file), std::filesystem::file_size(file), !missing && length > 0};
}

void DatabaseHandle::compareStamp() const {
  if (FileStamp::of(pathOf(target_)) != *watched_)
    throw BusyError(target_ + ": another program changed the database while it was read; try again",
                    SQLITE_BUSY);
}

void DatabaseHandle::check(int code) const {
  if (code != SQLITE_OK) fail();
}

void DatabaseHandle::fail() const {
  raiseLastError(handle_, target_, unitBegun_ ? UnitBefore::Open : UnitBefore::None);
}

void DatabaseHandle::failForMemory() const { throw StoreError(target_ + ": out of memory", SQLITE_NOMEM); }

} // namespace qx::sqlite
