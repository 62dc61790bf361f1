// The database port: connections, record sets and units of work.
#pragma once

#include "platform/column_name.h"
#include "platform/database_error.h"
#include "platform/sql.h"
#include "platform/value.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The rows of one statement with a cursor, and the way to change them.
///
/// A record set belongs to the connection that opened it and must not outlive it. After a failed `update` the
/// pending values are still there: call `cancelUpdate` or try again.
class Recordset {
public:
  Recordset() = default;
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;
  virtual ~Recordset() = default;

  /// The number of rows; of a stream the number read so far.
  virtual std::size_t recordCount() const = 0;
  virtual bool eof() const = 0;
  virtual void moveFirst() = 0;
  virtual void moveNext() = 0;
  /// To the row of this 0-based position; beyond the last one `eof` holds.
  virtual void moveTo(std::size_t position) = 0;
  /// Reads the current row again. False when it is no longer there; its values are then null.
  virtual bool resync() = 0;
  /// Runs the statement again and stands on the first row.
  virtual void requery() = 0;

  virtual std::size_t fieldCount() const = 0;
  virtual std::string_view fieldName(std::size_t index) const = 0;
  virtual bool hasField(ColumnName column) const = 0;
  /// The value in the current row, a pending one included. Raises `StatementError` for an unknown column.
  virtual const Value& value(ColumnName column) = 0;
  virtual const Value& value(std::size_t index) = 0;

  /// Begins a new row; only the columns that are set are inserted, so that defaults apply.
  virtual void addNew() = 0;
  /// Sets a column of the current or new row; nothing reaches the database before `update`.
  virtual void set(ColumnName column, Value value) = 0;
  /// Writes the pending columns of the row. Raises `StatementError` when the row is gone or the database
  /// refuses it.
  virtual void update() = 0;
  virtual void cancelUpdate() = 0;

  std::string text(ColumnName column) { return value(column).text(); }
};

/// What to do while another program holds the database.
class BusyWait {
public:
  virtual ~BusyWait() = default;
  /// Called about every 2 ms with the time waited so far; false gives up with `BusyError`.
  virtual bool goOn(std::chrono::milliseconds waited) = 0;
};

/// One connection to the ERP's database. Not thread-safe.
class Connection {
public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() = default;

  /// What the connection was opened with; empty when there is none.
  virtual const std::string& connectionString() const = 0;
  /// The files that hold the data and its journals, existing or not; none when a server keeps them.
  virtual std::vector<std::filesystem::path> files() const { return {}; }

  /// Runs a statement without rows; the number of rows that it changed.
  virtual std::int64_t execute(const Sql& statement) = 0;
  /// Runs a statement that adds or replaces a row of the table. Raises `NotInserted` when it has done
  /// neither.
  void insert(std::string_view table, const Sql& statement) {
    if (execute(statement) == 0) throw NotInserted(table);
  }
  /// All rows are fetched before it returns; rows of a single table can be changed.
  virtual std::unique_ptr<Recordset> open(const Sql& statement) = 0;
  /// The keys are fetched at once, each row when it is reached. Changing a row takes none away.
  virtual std::unique_ptr<Recordset> openKeyset(const Sql& statement) = 0;
  /// Rows are read as the cursor moves; they cannot be changed, and no unit begins or ends meanwhile.
  virtual std::unique_ptr<Recordset> openStream(const Sql& statement) = 0;

  /// True when the component opened the connection itself, so that units of work are its own business. On a
  /// host's connection the unit and savepoint members do nothing: the host owns its transactions.
  virtual bool ownsWork() const = 0;
  /// True between `beginWork` and its end, unless the unit was lost.
  virtual bool inWork() const = 0;
  /// Begins a unit that holds the database for writing. Waits while another program does, for as long as
  /// `wait` says (null: the connection's own limit).
  virtual void beginWork(BusyWait* wait) = 0;
  virtual void commitWork() = 0;
  /// Never raises.
  virtual void rollbackWork() noexcept = 0;

  /// From here to `endReading` all statements see the same state. Nothing is written meanwhile. Does nothing
  /// on a host's connection and inside a unit.
  virtual void beginReading() {}
  virtual void endReading() noexcept {}

  /// Ends the statement that is running with `InterruptedError`; may be called from a signal handler. Does
  /// nothing when none runs, or where the database cannot.
  virtual void interrupt() noexcept {}

  virtual void setSavepoint() = 0;
  virtual void releaseSavepoint() = 0;
  /// Undoes everything since the innermost savepoint and releases it. Never raises.
  virtual void rollbackToSavepoint() noexcept = 0;
};

/// Opens connections from what a user types.
class Database {
public:
  virtual ~Database() = default;
  /// Opens an existing database without creating one. Raises `StoreError` that names target and cause.
  virtual std::unique_ptr<Connection> open(std::string_view connectionString) = 0;
  /// Opens a database and creates it, folder included, when there is none.
  virtual std::unique_ptr<Connection> create(std::string_view connectionString) = 0;
};

/// What a unit of work does when another one is open already.
enum class Join : std::uint8_t {
  Never,  ///< it must be the only one
  IfOpen, ///< it is a part of that one, whose owner commits it or rolls it back
};

/// A unit of work that rolls back unless it is committed.
class WorkUnit {
public:
  explicit WorkUnit(Connection& connection, BusyWait* wait = nullptr, Join join = Join::Never)
      : connection_(connection), open_(join == Join::Never || !connection.inWork()) {
    if (open_) connection_.beginWork(wait);
  }
  WorkUnit(const WorkUnit&) = delete;
  WorkUnit& operator=(const WorkUnit&) = delete;
  ~WorkUnit() {
    if (open_) connection_.rollbackWork();
  }
  void commit() {
    if (open_) connection_.commitWork();
    open_ = false;
  }

private:
  Connection& connection_;
  bool open_;
};

/// One consistent state of the database for several reading statements.
class ReadView {
public:
  explicit ReadView(Connection& connection) : connection_(connection) { connection_.beginReading(); }
  ReadView(const ReadView&) = delete;
  ReadView& operator=(const ReadView&) = delete;
  ~ReadView() { connection_.endReading(); }

private:
  Connection& connection_;
};

/// A part of a unit that is undone alone unless it is released.
class Savepoint {
public:
  explicit Savepoint(Connection& connection) : connection_(connection) { connection_.setSavepoint(); }
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;
  ~Savepoint() {
    if (open_) connection_.rollbackToSavepoint();
  }
  void release() {
    connection_.releaseSavepoint();
    open_ = false;
  }

private:
  Connection& connection_;
  bool open_ = true;
};

} // namespace qx
