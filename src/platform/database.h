// The database port: connections, record sets and units of work.
#pragma once

#include "platform/column_name.h"
#include "platform/database_error.h"
#include "platform/files.h"
#include "platform/sql.h"
#include "platform/value.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class BulkStaging;
class Maintenance;

/// Takes the values of one row.
class RowValues {
public:
  RowValues() = default;
  RowValues(const RowValues&) = delete;
  RowValues& operator=(const RowValues&) = delete;
  virtual ~RowValues() = default;

  virtual void set(ColumnName column, Value value) = 0;
};

/// A column and what it is to hold.
struct ColumnValue {
  std::string_view column;
  Value value;
};

/// The rows of one statement with a cursor, and the way to change them.
///
/// A record set belongs to the connection that opened it and must not outlive it. A failed `update` keeps the
/// pending values: call `cancelUpdate` or try again.
class Recordset : public RowValues {
public:
  /// The number of rows; for a stream the number read so far.
  virtual std::size_t recordCount() const = 0;
  virtual bool eof() const = 0;
  virtual void moveFirst() = 0;
  virtual void moveNext() = 0;
  /// Moves to a row by its 0-based position; `eof` is true beyond the last one.
  virtual void moveTo(std::size_t position) = 0;
  /// Reads the current row again. False when it no longer exists; its values are then null.
  virtual bool resync() = 0;
  /// Runs the statement again and moves to the first row.
  virtual void requery() = 0;
  /// Says that the next rows, from the current one, will be read in this unit of work. A server is then asked
  /// for all of them at once and keeps other programs from changing them until the unit ends.
  virtual void readAhead(std::size_t /*count*/) {}

  virtual std::size_t fieldCount() const = 0;
  virtual std::string_view fieldName(std::size_t index) const = 0;
  virtual bool hasField(ColumnName column) const = 0;
  /// The value in the current row, or its pending value. Raises `StatementError` for an unknown column.
  virtual const Value& value(ColumnName column) = 0;
  virtual const Value& value(std::size_t index) = 0;

  /// Begins a new row; only the columns that are set are inserted, so that defaults apply.
  virtual void addNew() = 0;
  /// Sets a column of the current or new row; nothing reaches the database before `update`.
  void set(ColumnName column, Value value) override = 0;
  /// Writes the pending columns of the row. Raises `StatementError` when the row is gone or the database
  /// refuses it.
  virtual void update() = 0;
  virtual void cancelUpdate() = 0;

  std::string text(ColumnName column) { return value(column).text(); }
};

/// Decides how long to wait while another program holds the database.
class BusyWait {
public:
  virtual ~BusyWait() = default;
  /// Called about every 2 ms with the time waited so far; false gives up with `BusyError`.
  virtual bool goOn(std::chrono::milliseconds waited) = 0;
};

/// How many jobs a unit of work should hold, and how long it may stay open.
struct GroupLimits {
  std::size_t jobs = 100;
  std::chrono::milliseconds age{200};
};

/// One connection to the ERP's database. Not thread-safe.
class Connection {
public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() = default;

  /// The string that the connection was opened with, without passwords; empty when there is none.
  virtual const std::string& connectionString() const = 0;
  /// The files that hold the data and its journals, existing or not; none when a server keeps them.
  virtual std::vector<std::filesystem::path> files() const { return {}; }

  /// Runs a statement without rows. Returns the number of changed rows.
  virtual std::int64_t execute(const Sql& statement) = 0;
  /// Runs a statement that adds or replaces a row of the table. Raises `NotInserted` when it did neither.
  virtual void insert(std::string_view table, const Sql& statement) {
    if (execute(statement) == 0) throw NotInserted(table);
  }
  /// Runs a statement that changes one row of the table. False when there was none.
  virtual bool changeOne(std::string_view /*table*/, const Sql& statement) { return execute(statement) > 0; }
  /// Adds a row or, when the table has one with the same values of the first `keys` columns, overwrites its
  /// other columns; one statement, so that no other program can add it in between. Raises `NotInserted` when
  /// it did neither.
  virtual void put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) = 0;
  /// The way to stage the jobs of a whole file; it must not outlive the connection.
  virtual std::unique_ptr<BulkStaging> bulkStaging() = 0;
  /// The way to back up and upgrade the database; it must not outlive the connection.
  virtual std::unique_ptr<Maintenance> maintenance() = 0;
  /// The tables and views that lie where this connection creates its own, in no order; those of the database
  /// system itself are left out.
  virtual std::vector<std::string> tableNames() = 0;
  /// A column that every table has beside those of its definition: it identifies a row and ascends in the
  /// order in which rows are added.
  virtual std::string_view rowKey() const = 0;
  /// The condition that a text begins with `prefix`, compared as the column compares texts; no character of
  /// it has a meaning of its own. `text` is the column or an expression without values. An index on the
  /// column serves it. `afterPrefix`: another condition leaves out all texts before the prefix already.
  virtual Sql beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const = 0;
  /// The condition that a row comes after the one with these values when rows are sorted by these columns, of
  /// which none is null.
  virtual Sql comesAfter(std::span<const ColumnValue> position) const = 0;
  /// Fetches all rows before it returns; rows of a single table can be changed.
  virtual std::unique_ptr<Recordset> open(const Sql& statement) = 0;
  /// Fetches all keys at once and each row when it is reached. Changed rows stay in the set.
  virtual std::unique_ptr<Recordset> openKeyset(const Sql& statement) = 0;
  /// Reads rows as the cursor moves. They cannot be changed, and no unit may begin or end meanwhile.
  virtual std::unique_ptr<Recordset> openStream(const Sql& statement) = 0;

  /// True when the component opened the connection and so owns its units of work. On a host's connection the
  /// unit and savepoint members do nothing: the host owns its transactions.
  virtual bool ownsWork() const = 0;
  /// True between `beginWork` and its end, unless the unit was lost.
  virtual bool inWork() const = 0;
  /// Begins a unit that locks the database for writing. While another program holds it, waits as long as
  /// `wait` decides (null: the connection's own limit).
  virtual void beginWork(BusyWait* wait) = 0;
  virtual void commitWork() = 0;
  /// Never raises.
  virtual void rollbackWork() noexcept = 0;

  /// From now to the end of the open unit, writes of record sets, `insert`, `put` and `changeOne` may wait
  /// and be sent together, before a statement that could see them and before the commit. One that the
  /// database refuses then raises `WorkLostError`, in whatever member sent it: the unit must be done again
  /// without collecting. Results may be answered from memory while nothing that concerns them was written.
  virtual void collectWrites() {}
  /// Whether noting reads saves anything: the database is a server, and writes are collected.
  virtual bool readsAhead() const { return false; }
  /// From now to `readNoted` nothing is read or written: `open` answers what is known, notes the statement of
  /// every other result and answers with no rows. So code that only reads can be run to learn what it will
  /// ask.
  virtual void noteReads() {}
  /// Ends that and reads the noted results in few statements, so that `open` knows them in this unit. Returns
  /// how many there were.
  virtual std::size_t readNoted() { return 0; }
  /// The same number as long as the open unit stays open and no part of it is undone: what was read and
  /// locked meanwhile still holds. Outside of a unit another number each time.
  virtual std::uint64_t epoch() { return ++lastEpoch_; }
  virtual GroupLimits groupLimits() const { return {}; }

  /// Until `endReading` all statements see the same state; the caller writes nothing meanwhile. Does nothing
  /// on a host's connection or inside a unit.
  virtual void beginReading() {}
  virtual void endReading() noexcept {}

  /// Ends the running statement with `InterruptedError`; safe in a signal handler. Does nothing when none
  /// runs or the database does not support it.
  virtual void interrupt() noexcept {}

  virtual void setSavepoint() = 0;
  virtual void releaseSavepoint() = 0;
  /// Undoes everything since the innermost savepoint and releases it. Never raises.
  virtual void rollbackToSavepoint() noexcept = 0;

private:
  std::uint64_t lastEpoch_ = 0;
};

/// Opens connections from the text that a user types.
class Database {
public:
  virtual ~Database() = default;
  /// The text as messages may show it, without passwords. Raises `std::invalid_argument` when it is
  /// malformed.
  virtual std::string displayed(std::string_view connectionString) const {
    return std::string(connectionString);
  }
  /// False when it is known without opening that there is no such database. Raises `StoreError` when that
  /// cannot be told.
  virtual bool exists(std::string_view /*connectionString*/) const { return true; }
  /// The folder in which the database lies; empty when a server keeps it.
  virtual std::filesystem::path folder(std::string_view /*connectionString*/) const { return {}; }
  /// Creates the missing folders and an empty file, for `create` to fill. An existing file or folder stays as
  /// it is. Does nothing for a server.
  virtual void reserve(std::string_view /*connectionString*/, FileSharing /*sharing*/) {}
  /// Opens an existing database. Raises `StoreError`, which names target and cause.
  virtual std::unique_ptr<Connection> open(std::string_view connectionString) = 0;
  /// Opens a database; creates it and its folder when missing.
  virtual std::unique_ptr<Connection> create(std::string_view connectionString) = 0;
};

/// What a unit of work does when another one is open already.
enum class Join : std::uint8_t {
  Never,  ///< it must be the only one
  IfOpen, ///< it becomes part of that one, whose owner commits it or rolls it back
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

/// A part of a unit that is rolled back by itself unless it is released.
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
