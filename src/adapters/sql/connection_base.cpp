#include "adapters/sql/connection_base.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/recordsets.h"
#include "adapters/sql/statement_cache.h"
#include "adapters/sql/upsert.h"

#include <utility>

namespace qx::relational {

ConnectionBase::ConnectionBase(std::unique_ptr<Driver> driver, Spelling spelling)
    : driver_(std::move(driver)), spelling_(std::move(spelling)),
      statements_(std::make_unique<StatementCache>(*driver_, spelling_)) {}

ConnectionBase::~ConnectionBase() = default;

std::int64_t ConnectionBase::execute(const Sql& statement) {
  Statement& prepared = statements_->plain(statement);
  prepared.bindAll(statement.values());
  return prepared.run();
}

void ConnectionBase::put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  insert(table, upsert(table, row, keys));
}

std::string_view ConnectionBase::rowKey() const { return driver_->dialect().rowKey; }

std::unique_ptr<Recordset> ConnectionBase::open(const Sql& statement) {
  return std::make_unique<FetchedRecordset>(*statements_, statement);
}

std::unique_ptr<Recordset> ConnectionBase::openKeyset(const Sql& statement) {
  return std::make_unique<KeysetRecordset>(*statements_, statement);
}

std::unique_ptr<Recordset> ConnectionBase::openStream(const Sql& statement) {
  return std::make_unique<StreamRecordset>(*statements_, statement);
}

} // namespace qx::relational
