// The writes of a unit of work that have not been sent yet.
#pragma once

#include "adapters/sql/known_rows.h"
#include "adapters/sql/statement_cache.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace qx::relational {

/// A written row, or a statement that writes.
struct WaitingWrite {
  enum class Kind : std::uint8_t { Insert, Update, Statement };

  Kind kind;
  RowSource* source;         ///< null for a statement
  PlainStatement* statement; ///< null for a row
  std::string table;         ///< in lower case
  std::int64_t key;          ///< of the row; 0 when the database gives it
  ColumnMask columns;
  std::vector<Value> values; ///< of the columns, in their order
};

/// Writes in their order, how they change what a statement would read, and how they are sent: those of a
/// table in their order, tables in the order in which they were first written, and those of one kind together
/// where the database joins statements.
class WaitingWrites {
public:
  /// What the writes do to the result of a read. `Derivable`: the result consists of rows that wait.
  enum class Effect : std::uint8_t { None, Derivable, Mixed };

  explicit WaitingWrites(StatementCache& statements) : statements_(statements) {}

  std::size_t size() const { return writes_.size(); }
  bool empty() const { return writes_.empty(); }
  /// Whether there are writes to the table; the name is in lower case.
  bool concern(std::string_view table) const;
  /// Whether there are writes that may change this row.
  bool concernRow(std::string_view table, std::int64_t key) const;
  void add(WaitingWrite write);
  /// Forgets those behind the first `count`.
  void keep(std::size_t count);
  void clear() noexcept;
  /// Sends the writes at places from `from` up to `to`, without forgetting them. Each must change one row;
  /// else `NotInserted` is raised.
  void send(std::size_t from, std::size_t to);

  /// `matching` gets the new rows that belong to the result.
  Effect effectOn(const RowQuery& query, std::span<const Value> parameters,
                  std::vector<const WaitingWrite*>& matching);
  /// Adds a new row to a result of this shape as it will be read, with null where nothing is given.
  static void append(const WaitingWrite& row, const RowShape& shape, Rows& rows);

private:
  using Kind = WaitingWrite::Kind;
  /// The places of writes to a table, by what a column of the row holds.
  struct Index {
    std::size_t upTo = 0; ///< how many writes it knows
    std::unordered_map<std::string, std::vector<std::size_t>> byValue;
    std::vector<std::size_t> others; ///< those of which that is not known
  };
  struct Run;

  void sendRun(const Run& run);
  void sendInserts(std::span<const WaitingWrite* const> rows);
  void sendUpdates(std::span<const WaitingWrite* const> rows);
  void sendStatements(std::span<const WaitingWrite* const> rows);
  static void forEachBlock(std::span<const WaitingWrite* const> rows, std::size_t width,
                           const std::function<void(std::span<const WaitingWrite* const>)>& send);
  static void sendRow(Statement& statement, const WaitingWrite& row, std::string_view table, bool keys);
  static void sendBlock(Statement& statement, std::span<const WaitingWrite* const> rows,
                        std::string_view table, bool keys);
  bool joinsStatements() const;
  std::vector<std::size_t> candidates(const ReadPattern& pattern, std::span<const Value> parameters);
  static const Value* valueIn(const WaitingWrite& row, const ColumnTerm& column);

  StatementCache& statements_;
  std::vector<WaitingWrite> writes_;
  std::map<std::string, std::size_t, std::less<>> countOf_;        ///< by table
  std::map<std::pair<std::string, std::uint64_t>, Index> indexes_; ///< by table and column
};

/// A written value as the database would return it from a column of this kind.
Value valueAsRead(const Value& written, ColumnKind kind);

} // namespace qx::relational
