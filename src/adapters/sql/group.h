// A unit of work whose statements are answered from memory where that is the same, and whose writes are sent
// together.
#pragma once

#include "adapters/sql/known_rows.h"
#include "adapters/sql/row_changes.h"
#include "adapters/sql/row_reader.h"
#include "adapters/sql/statement_cache.h"
#include "adapters/sql/waiting_writes.h"
#include "platform/database.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qx::relational {

/// The savepoints of the database itself.
class Savepoints {
public:
  Savepoints() = default;
  Savepoints(const Savepoints&) = delete;
  Savepoints& operator=(const Savepoints&) = delete;
  virtual ~Savepoints() = default;

  virtual void setRealSavepoint() = 0;
  virtual void releaseRealSavepoint() = 0;
  /// Undoes everything since the innermost one and releases it.
  virtual void undoToRealSavepoint() noexcept = 0;
};

/// The reads and writes of one connection.
///
/// Outside of a collected unit everything goes to the database at once. In a collected one
/// - a written row waits until a statement could see it, or the commit. Rows of a table are written in their
///   order; tables follow each other in the order in which they were first written;
/// - a result that was read, or read ahead, is the answer to the same statement until a row is written that
///   may belong to it;
/// - a statement that asks for rows that still wait is answered from them. Before the unit ends, all such
///   answers are compared with the database's;
/// - a savepoint is a mark among the waiting writes. It becomes a real one only when something behind it is
///   sent before it is released. Before a part is undone in which such answers were given, they are compared,
///   too: they may be why it is undone.
///
/// A table for which the database does something of its own when a row is written is written at once, and
/// nothing that was read before is an answer afterwards.
///
/// A write that the database refuses, and an answer that it does not confirm, raise `WorkLostError`: whose
/// fault it was can only be told when the unit is done again without collecting.
class Group {
public:
  Group(StatementCache& statements, Savepoints& savepoints)
      : statements_(statements), savepoints_(savepoints), reader_(statements), waiting_(statements) {}

  StatementCache& statements() { return statements_; }
  bool collects() const { return collects_; }
  bool lost() const { return lost_; }
  /// Whether it collects and results of many statements are read at once.
  bool joinsStatements() const;
  /// Changes with every unit of work.
  std::uint64_t unit() const { return unit_; }
  /// Changes with every unit of work and whenever a part of one is undone.
  std::uint64_t epoch() const { return epoch_; }
  std::uint64_t nextEpoch() { return ++epoch_; }
  /// Whether writes to a table may wait.
  bool collectsFor(std::string_view table) const;
  /// Collects until `end`.
  void begin();
  /// Sends what waits, proves the answers and stops collecting. Call it before the commit.
  void finish();
  /// Forgets what waits.
  void end() noexcept;

  /// Gives the unit up, which is then done again without collecting.
  [[noreturn]] void loseUnit(const std::string& reason);

  void setSavepoint();
  void releaseSavepoint();
  void rollbackToSavepoint() noexcept;

  /// The rows of a query. `again` reads them from the database in any case.
  std::shared_ptr<const Rows> read(RowQuery& query, std::span<const Value> parameters, bool again = false);
  /// From now on unknown results are noted and answered with no rows.
  void noteReads();
  /// Reads the noted results in few statements; returns how many.
  std::size_t readNoted();
  /// Rows of a table by their keys, locked against other programs until the end of the unit. Missing ones are
  /// left out.
  Rows readByKey(KeysetQuery& query, std::span<const std::int64_t> keys) {
    return reader_.readByKey(query, keys);
  }

  /// Sends what a statement of the table could see. Null: of any table.
  void prepareToRead(const std::string* table);
  /// Sends all that waits, because a statement is run that writes.
  void prepareToWrite(const Sql& statement);
  void prepareToWrite(const RowChange& change);
  void prepareToInsert(const RowSource& source, const ColumnMask& columns, std::span<const Value> values);
  void prepareToUpdate(const RowSource& source, std::int64_t key, const ColumnMask& columns,
                       std::span<const Value> values, const BeforeValues& before);
  /// Sends a waiting change of this row.
  void prepareToReadRow(const RowSource& source, std::int64_t key);

  /// Adds a row. Returns its key when the row names it, else 0.
  std::int64_t insertLater(RowSource& source, const ColumnMask& columns, std::span<const Value> values);
  /// Changes a row. `before` gives the values that it had.
  void updateLater(RowSource& source, std::int64_t key, const ColumnMask& columns,
                   std::span<const Value> values, const BeforeValues& before);
  /// Runs a statement that writes one row.
  void executeLater(std::string_view table, const Sql& statement) {
    executeLater(table, statements_.plain(statement), {statement.values().begin(), statement.values().end()});
  }
  void executeLater(std::string_view table, PlainStatement& statement, std::vector<Value> values);
  /// Changes with every write to the table that is not made through a record set.
  std::uint64_t writesTo(const std::string& table) const;

private:
  struct Mark {
    std::size_t at;      ///< how many writes waited
    std::size_t derived; ///< how many answers were derived
    std::uint64_t known; ///< what was known
    bool real;
  };

  void flush(bool allMarks);
  void prove();
  bool hasClaims(std::size_t from) const;
  void note(const RowChange& change);
  static std::shared_ptr<const Rows> changedRows(const KnownRows::Entry& entry, const RowChange& change);
  std::shared_ptr<const Rows> noteRead(RowQuery& query, std::span<const Value> parameters);
  void requireWriting() const;
  const KnownRows::Entry* widerResult(RowQuery& query, std::span<const Value> parameters,
                                      const std::function<bool(const KnownRows::Entry&)>& wanted);
  std::shared_ptr<const Rows> readWhole(RowQuery& query, std::span<const Value> parameters);
  std::shared_ptr<const Rows> otherwiseKnown(RowQuery& query, std::span<const Value> parameters);
  std::shared_ptr<const Rows> derivedRows(RowQuery& query, std::span<const Value> parameters,
                                          WaitingWrites::Effect effect,
                                          std::span<const WaitingWrite* const> matching);
  [[noreturn]] void lose(const DatabaseError& cause);

  StatementCache& statements_;
  Savepoints& savepoints_;
  RowReader reader_;
  WaitingWrites waiting_;
  KnownRows known_;
  std::map<std::string, std::uint64_t, std::less<>> writes_;
  std::vector<std::string> triggered_; ///< tables that are written at once
  std::vector<Mark> marks_;
  std::map<RowQuery*, std::vector<std::vector<Value>>> noted_;
  std::vector<KnownRows::Entry*> derived_;
  std::uint64_t unit_ = 0;
  std::uint64_t epoch_ = 0;
  bool collects_ = false;
  bool notes_ = false;
  bool lost_ = false;
};

} // namespace qx::relational
