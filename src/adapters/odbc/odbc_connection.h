// One connection to a database server.
#pragma once

#include "adapters/sql/connection_base.h"
#include "adapters/sql/spelling.h"

#include <memory>
#include <string>
#include <vector>

namespace qx {

namespace odbc {
class OdbcDriver;
}

/// Implements the connection port on a server that is reached through ODBC.
///
/// Other programs work beside a unit of work: it locks the rows that it writes. A statement that meets such a
/// lock waits as long as the wait of its unit decides, then raises `BusyError`; a unit that is chosen to give
/// way to another one raises `ConflictError`. A lost connection is opened again by the next statement outside
/// of a unit.
class OdbcConnection final : public relational::ConnectionBase {
public:
  OdbcConnection(std::unique_ptr<odbc::OdbcDriver> driver, relational::Spelling spelling);
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection() override;

  /// Without the password.
  const std::string& connectionString() const override;
  std::vector<std::string> tableNames() override;
  std::unique_ptr<BulkStaging> bulkStaging() override;
  std::unique_ptr<Maintenance> maintenance() override;
  bool ownsWork() const override { return true; }
  bool inWork() const override;
  void beginWork(BusyWait* wait) override;
  void commitWork() override;
  void rollbackWork() noexcept override;
  void beginReading() override;
  void endReading() noexcept override;
  void interrupt() noexcept override;

private:
  void setRealSavepoint() override;
  void releaseRealSavepoint() override;
  void undoToRealSavepoint() noexcept override;
  odbc::OdbcDriver& odbc_;
};

} // namespace qx
