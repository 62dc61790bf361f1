#include "adapters/sql/connection_base.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/group.h"
#include "adapters/sql/recordsets.h"
#include "adapters/sql/statement_cache.h"

#include <charconv>
#include <cstdlib>
#include <utility>

namespace qx::relational {

ConnectionBase::ConnectionBase(std::unique_ptr<Driver> driver, Spelling spelling)
    : driver_(std::move(driver)), spelling_(std::move(spelling)),
      statements_(std::make_unique<StatementCache>(*driver_, spelling_)),
      group_(std::make_unique<Group>(*statements_, static_cast<Savepoints&>(*this))) {
  constexpr std::size_t most = 1000;
  if (driver_->dialect().joinsStatements) limits_ = {most, std::chrono::milliseconds(2000)};
  const char* const named = std::getenv("QXIMPORTJOB_GROUP");
  if (named == nullptr) return;
  const std::string_view text(named);
  std::size_t jobs = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
  if (error != std::errc() || end != text.data() + text.size() || jobs < 1 || jobs > most)
    throw StoreError("QXIMPORTJOB_GROUP is \"" + std::string(text) + "\"; a group holds 1 to 1000 jobs", 0);
  limits_.jobs = jobs;
}

ConnectionBase::~ConnectionBase() = default;

std::int64_t ConnectionBase::execute(const Sql& statement) {
  group_->prepareToWrite(statement);
  Statement& prepared = *statements_->plain(statement).statement;
  prepared.bindAll(statement.values());
  return prepared.run();
}

void ConnectionBase::insert(std::string_view table, const Sql& statement) {
  if (group_->collectsFor(table))
    group_->executeLater(table, statement);
  else
    Connection::insert(table, statement);
}

bool ConnectionBase::changeOne(std::string_view table, const Sql& statement) {
  if (!group_->collectsFor(table)) return Connection::changeOne(table, statement);
  group_->executeLater(table, statement);
  return true;
}

void ConnectionBase::put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  if (!group_->collectsFor(table)) {
    Connection::insert(table, driver_->dialect().put(table, row, keys));
    return;
  }
  std::vector<Value> values;
  values.reserve(row.size());
  for (const ColumnValue& each : row) values.push_back(each.value);
  group_->executeLater(table, statements_->upsert(table, row, keys), std::move(values));
}

std::string_view ConnectionBase::rowKey() const { return driver_->dialect().rowKey; }

Sql ConnectionBase::beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const {
  return driver_->dialect().beginsWith(text, prefix, afterPrefix);
}

Sql ConnectionBase::comesAfter(std::span<const ColumnValue> position) const {
  return driver_->dialect().comesAfter(position);
}

std::unique_ptr<Recordset> ConnectionBase::open(const Sql& statement) {
  return std::make_unique<FetchedRecordset>(*group_, statement);
}

std::unique_ptr<Recordset> ConnectionBase::openKeyset(const Sql& statement) {
  return std::make_unique<KeysetRecordset>(*group_, statement);
}

std::unique_ptr<Recordset> ConnectionBase::openStream(const Sql& statement) {
  group_->prepareToRead(nullptr);
  return std::make_unique<StreamRecordset>(*statements_, statement);
}

void ConnectionBase::collectWrites() {
  if (inWork()) group_->begin();
}

bool ConnectionBase::readsAhead() const { return group_->joinsStatements(); }

void ConnectionBase::noteReads() { group_->noteReads(); }

std::size_t ConnectionBase::readNoted() { return group_->readNoted(); }

std::uint64_t ConnectionBase::epoch() { return inWork() ? group_->epoch() : group_->nextEpoch(); }

void ConnectionBase::setSavepoint() { group_->setSavepoint(); }

void ConnectionBase::releaseSavepoint() { group_->releaseSavepoint(); }

void ConnectionBase::rollbackToSavepoint() noexcept { group_->rollbackToSavepoint(); }

void ConnectionBase::finishGroup() { group_->finish(); }

void ConnectionBase::endGroup() noexcept { group_->end(); }

bool ConnectionBase::groupLost() const { return group_->lost(); }

} // namespace qx::relational
