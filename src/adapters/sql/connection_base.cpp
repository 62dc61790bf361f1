#include "adapters/sql/connection_base.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/recordsets.h"
#include "adapters/sql/statement_cache.h"

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
  insert(table, driver_->dialect().put(table, row, keys));
}

std::string_view ConnectionBase::rowKey() const { return driver_->dialect().rowKey; }

Sql ConnectionBase::beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const {
  return driver_->dialect().beginsWith(text, prefix, afterPrefix);
}

Sql ConnectionBase::comesAfter(std::span<const ColumnValue> position) const {
  return driver_->dialect().comesAfter(position);
}

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
