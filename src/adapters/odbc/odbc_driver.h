// One session on a database server: its connection, its unit of work and what fails in it.
#pragma once

#include "adapters/odbc/connection_string.h"
#include "adapters/odbc/failure.h"
#include "adapters/odbc/handle.h"
#include "adapters/odbc/interrupter.h"
#include "adapters/odbc/server.h"
#include "adapters/sql/driver.h"
#include "platform/database.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::odbc {

/// What a call does.
enum class Effect : std::uint8_t {
  Stays,  ///< it does not reach the server
  Reads,  ///< nothing to the tables
  Writes, ///< something to the tables
};

/// Implements the driver of the general half on ODBC.
///
/// A server gives up the whole unit of work after a statement that failed in it, while the port promises that
/// the unit stays open. Therefore a savepoint ("step") is set before every statement that follows a write,
/// and a failure goes back to it. A unit that is lost all the same stays so until its owner ends it: until
/// then every statement raises `WorkLostError`.
///
/// A lost connection is opened again by the next statement outside of a unit.
class OdbcDriver final : public relational::Driver {
public:
  /// Connects. Raises `StoreError`, which names the database and the cause.
  explicit OdbcDriver(ConnectionString connectionString);
  OdbcDriver(const OdbcDriver&) = delete;
  OdbcDriver& operator=(const OdbcDriver&) = delete;
  ~OdbcDriver() override;

  const relational::Dialect& dialect() const override { return *server_->dialect; }
  std::unique_ptr<relational::Statement> prepare(std::string_view text,
                                                 relational::StatementLife life) override;
  relational::TableKey keyOf(std::string_view table) override;
  std::optional<std::int64_t> insertRow(relational::Statement& insert) override;
  std::vector<std::string> triggeredTables() override;
  void stakeUnit(bool staked) noexcept override { staked_ = staked; }

  /// The connection string without the password, as messages name the database.
  const std::string& name() const { return name_; }
  /// Ends the session with all its statements. It begins anew when it is needed.
  void disconnect() noexcept;
  const Server& server() const { return *server_; }
  /// The tables and views where new tables are created.
  std::vector<std::string> tableNames();

  bool inUnit() const { return scope_ == Scope::Unit; }
  bool unitLost() const { return lost_; }
  void begin(BusyWait* wait);
  void commit();
  void rollback() noexcept;
  void beginReading();
  void endReading() noexcept;
  void setSavepoint();
  void releaseSavepoint();
  void rollbackToSavepoint() noexcept;
  void interrupt() noexcept { interrupter_.interrupt(); }

  // For its statements.
  void* connection() const { return connection_.get(); }
  /// Changes with every new connection, whose statements are all gone.
  int session() const { return session_; }
  /// Whether the data of a row in a block can be read in parts.
  bool readsParts() const { return readsParts_; }
  /// Whether the driver tells what the server expects of a parameter.
  bool describesParameters() const { return describesParameters_; }
  /// The type of ODBC as which a text of this length, in units of UTF-16, goes out.
  short textType(std::size_t length) const;
  /// Connects again when the connection was lost and no unit depends on it.
  void requireConnection();
  /// Runs a call that may reach the server and returns its result. Raises when the call failed.
  short call(void* statement, std::string_view text, Effect effect, const std::function<short()>& run);

private:
  Failure failureOfStatement(void* statement) const;
  enum class Scope : std::uint8_t { None, Unit, Reading };
  /// What happened since the unit or an explicit savepoint began.
  struct Level {
    bool step = false;   ///< the savepoint "step" was set in this level
    bool unsafe = false; ///< something was written since the last savepoint
    bool wrote = false;
  };

  void connect();
  void open(const ConnectionString& connectionString);
  void greet();
  void requireUnit() const;
  void control(std::string_view text);
  void prepareForFailure();
  void undoStatement() noexcept;
  void loseUnit(const Failure& failure);
  void fail(const Failure& failure, std::string_view text);
  std::string partName() const { return "part" + std::to_string(levels_.size() - 1); }
  std::optional<std::string> answer(std::string_view query);
  std::vector<std::string> names(std::string_view query);
  void readRowKeys();

  ConnectionString connectionString_;
  std::string name_;
  Handle environment_;
  Handle connection_;
  const Server* server_ = nullptr;
  Interrupter interrupter_;
  std::map<std::string, std::string, std::less<>> rowKeys_; ///< by table
  std::vector<Level> levels_;                               ///< the unit's own first
  BusyWait* wait_ = nullptr;                                ///< of the unit
  Scope scope_ = Scope::None;
  std::optional<Failure> conflict_; ///< by which the unit was lost
  int session_ = 0;
  bool readsParts_ = false;
  bool describesParameters_ = true;
  bool lost_ = false;
  bool staked_ = false; ///< a failed statement costs the unit
  bool disconnected_ = true;
};

} // namespace qx::odbc
