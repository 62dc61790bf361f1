// The half of a connection that all databases share: statements and record sets.
#pragma once

#include "adapters/sql/driver.h"
#include "adapters/sql/group.h"
#include "adapters/sql/spelling.h"
#include "platform/database.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace qx::relational {

class StatementCache;

/// Runs statements and opens record sets through a driver. Translates each distinct statement once and keeps
/// it compiled. Derived classes add the units of work: they call `finishGroup` before a commit and `endGroup`
/// whenever a unit begins or ends.
class ConnectionBase : public Connection, private Savepoints {
public:
  ConnectionBase(const ConnectionBase&) = delete;
  ConnectionBase& operator=(const ConnectionBase&) = delete;
  ~ConnectionBase() override;

  std::int64_t execute(const Sql& statement) override;
  void put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) override;
  std::string_view rowKey() const override;
  Sql beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const override;
  Sql comesAfter(std::span<const ColumnValue> position) const override;
  std::unique_ptr<Recordset> open(const Sql& statement) override;
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override;
  std::unique_ptr<Recordset> openStream(const Sql& statement) override;

  void insert(std::string_view table, const Sql& statement) override;
  bool changeOne(std::string_view table, const Sql& statement) override;
  void collectWrites() override;
  bool readsAhead() const override;
  void noteReads() override;
  std::size_t readNoted() override;
  std::uint64_t epoch() override;
  /// A round trip to a server serves many jobs, and other programs wait there for rows only.
  /// `$QXIMPORTJOB_GROUP` sets another number of jobs.
  GroupLimits groupLimits() const override { return limits_; }
  void setSavepoint() override;
  void releaseSavepoint() override;
  void rollbackToSavepoint() noexcept override;

protected:
  /// Takes ownership of the driver; derived classes keep a reference to it under its own type. `spelling`:
  /// for a database that reports names in lower case.
  explicit ConnectionBase(std::unique_ptr<Driver> driver, Spelling spelling = {});

  Driver& driver() { return *driver_; }
  void finishGroup();
  void endGroup() noexcept;
  /// Whether writes that waited were refused, so that nothing of the unit can be kept.
  bool groupLost() const;

private:
  std::unique_ptr<Driver> driver_;
  Spelling spelling_;
  std::unique_ptr<StatementCache> statements_; ///< destroyed before its driver
  std::unique_ptr<Group> group_;
  GroupLimits limits_;
};

} // namespace qx::relational
