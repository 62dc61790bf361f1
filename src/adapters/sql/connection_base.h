// The half of a connection that all databases share: statements and record sets.
#pragma once

#include "adapters/sql/driver.h"
#include "platform/database.h"

#include <memory>

namespace qx::relational {

class StatementCache;

/// Runs statements and opens record sets through a driver. Translates each distinct statement once and keeps
/// it compiled. Derived classes add the units of work.
class ConnectionBase : public Connection {
public:
  std::int64_t execute(const Sql& statement) override;
  std::unique_ptr<Recordset> open(const Sql& statement) override;
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override;
  std::unique_ptr<Recordset> openStream(const Sql& statement) override;

protected:
  /// Takes ownership of the driver. Derived classes keep a reference to it under its own type.
  explicit ConnectionBase(std::unique_ptr<Driver> driver);
  ~ConnectionBase() override;

  /// Forgets all compiled statements, which a new session of the database does not know.
  void forgetStatements() noexcept;

private:
  std::unique_ptr<Driver> driver_;
  std::unique_ptr<StatementCache> statements_; // destroyed before its driver
};

} // namespace qx::relational
