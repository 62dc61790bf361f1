// A connection to the ERP's database that a host hands over.
#pragma once

#include "adapters/ado/host_database.h"
#include "automation/automation_object.h"
#include "platform/database.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Implements the connection port on a connection object of the host's data access interface (ADO), which is
/// called by the names of its members.
///
/// The host owns its transactions: none is begun or ended. What is written is part of one that the host has
/// open, else it is durable at once. A database that ends a statement in favour of another program's refuses
/// it; whether it took the host's transaction along is the host's to find out.
class AdoConnection final : public Connection, public automation::OfHost {
public:
  /// `create` makes the commands and record sets.
  AdoConnection(automation::ObjectPointer connection, ado::CreateObject create);
  AdoConnection(const AdoConnection&) = delete;
  AdoConnection& operator=(const AdoConnection&) = delete;
  ~AdoConnection() override;

  /// Whether an object has the members that the adapter needs of a connection.
  static bool isConnection(automation::AutomationObject& object);

  const automation::ObjectPointer& hostObject() const override { return database_.object(); }

  const std::string& connectionString() const override { return database_.name(); }
  std::int64_t execute(const Sql& statement) override;
  void put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) override;
  /// Raises `StatementError`: files are staged by the program on a connection of its own.
  std::unique_ptr<BulkStaging> bulkStaging() override;
  /// Raises `StatementError`: the database is its owner's to keep.
  std::unique_ptr<Maintenance> maintenance() override;
  std::vector<std::string> tableNames() override;
  std::string_view rowKey() const override { return database_.dialect().rowKey; }
  Sql beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const override;
  Sql comesAfter(std::span<const ColumnValue> position) const override;
  std::unique_ptr<Recordset> open(const Sql& statement) override;
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override;
  std::unique_ptr<Recordset> openStream(const Sql& statement) override;

  bool ownsWork() const override { return false; }
  bool inWork() const override { return false; }
  void beginWork(BusyWait* /*wait*/) override {}
  void commitWork() override {}
  void rollbackWork() noexcept override {}
  void setSavepoint() override {}
  void releaseSavepoint() override {}
  void rollbackToSavepoint() noexcept override {}

private:
  mutable ado::HostDatabase database_; ///< asks for the dialect when it is needed
};

} // namespace qx
