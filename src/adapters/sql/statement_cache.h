// The compiled statements of one connection.
#pragma once

#include "adapters/sql/driver.h"
#include "adapters/sql/row_shape.h"
#include "adapters/sql/statement_pattern.h"
#include "platform/database.h"
#include "platform/sql.h"

#include <bitset>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace qx::relational {

/// Which columns of a row a write touches, by index in the row shape.
using ColumnMask = std::bitset<256>;

/// One statement for many rows, by their number.
using ManyStatements = std::map<std::size_t, std::unique_ptr<Statement>>;

/// The source of rows: their shape and, for rows of a single table, how to write them back.
struct RowSource {
  ResultLayout layout;
  std::optional<RowShape> shape;
  std::string table;    ///< empty when the rows cannot be changed
  std::string tableKey; ///< the same in lower case
  TableKey key;         ///< of the table
  int keyColumn = -1;   ///< index in the shape of a single text key, or -1
  std::unordered_map<ColumnMask, std::unique_ptr<Statement>> updates;
  std::unordered_map<ColumnMask, std::unique_ptr<Statement>> inserts;
  std::unordered_map<ColumnMask, ManyStatements> manyUpdates;
};

/// A statement that gives the rows of many at once.
struct ManyQuery {
  std::unique_ptr<Statement> select;
  std::size_t rows = 0; ///< for how many it has values
  ResultLayout layout;
  std::optional<RowShape> shape;
};

struct PlainStatement {
  std::unique_ptr<Statement> statement;
  std::optional<WritePattern> pattern;
  std::optional<SetStatement> set; ///< where the database takes such
  ManyStatements many{};
};

struct RowQuery {
  std::unique_ptr<Statement> select;
  RowSource source;
  std::string text; ///< translated
  std::size_t parameterCount = 0;
  std::optional<ReadPattern> pattern;    ///< of a select over one table
  bool sorted = false;                   ///< by terms of the statement
  bool derivable = true;                 ///< written rows have been read back as they were written
  std::map<std::size_t, ManyQuery> many; ///< by the number of rows
  RowQuery* whole = nullptr;             ///< reads all columns of the same rows
  std::size_t wholeOf = 0;               ///< of how many such statements it is one
};

struct KeysetQuery {
  std::unique_ptr<Statement> keys;
  std::unique_ptr<Statement> row;
  RowSource source;
  std::string rowText;                   ///< the select of a row without its condition
  std::map<std::size_t, ManyQuery> many; ///< by the number of rows
};

struct StreamQuery {
  std::unique_ptr<Statement> select;
  ResultLayout layout;
};

/// How many sets of this number of values one statement takes.
std::size_t setsAtOnce(std::size_t width);

/// Compiles each distinct statement once. Statements are found by the addresses of their fragments.
class StatementCache {
public:
  /// Driver and spelling outlive the cache.
  StatementCache(Driver& driver, const Spelling& spelling) : driver_(driver), spelling_(spelling) {}

  Driver& driver() { return driver_; }
  PlainStatement& plain(const Sql& statement);
  /// The statement that adds or overwrites a row of these columns, of which the first `keys` tell rows apart.
  PlainStatement& upsert(std::string_view table, std::span<const ColumnValue> row, std::size_t keys);
  RowQuery& rows(const Sql& statement);
  /// Another statement that reads all columns of the rows that the query reads, by the same values; null
  /// where none has been compiled.
  RowQuery* wholeRows(RowQuery& query);
  KeysetQuery& keyset(const Sql& statement);
  /// A statement for a stream, not shared.
  StreamQuery stream(const Sql& statement);
  /// The results for at least `rows` sets of values, each row behind the number of its set.
  ManyQuery& many(RowQuery& query, std::size_t rows);
  /// The rows for at least `rows` keys, which it locks.
  ManyQuery& many(KeysetQuery& query, std::size_t rows);
  /// For exactly this number of sets of values; null when there is no such statement.
  Statement* many(PlainStatement& plain, std::size_t sets);
  /// Updates of rows by their keys, each set the key and the values of the columns.
  Statement& manyUpdates(RowSource& source, const ColumnMask& columns, std::size_t rows);
  /// An insert of rows in their order, each with the values of its columns.
  std::unique_ptr<Statement> manyInserts(RowSource& source, std::span<const ColumnMask* const> rows);
  Statement& update(RowSource& source, const ColumnMask& columns);
  Statement& insert(RowSource& source, const ColumnMask& columns);
  /// Whether an insert of these columns draws the table's key itself: the number after the highest, as rows
  /// that name theirs have left it. A sequence would not know of those.
  bool assignsKey(const RowSource& source, const ColumnMask& columns) const;
  RowShape shapeOf(Statement& statement, const ResultLayout& layout) const {
    return {statement, layout, driver_.dialect(), spelling_};
  }
  /// Reads the shape at the first use of the statement, and again when the schema has changed.
  void completeShape(RowSource& source, Statement& statement) const;

private:
  template <class Entry>
  class Map {
  public:
    template <class Make>
    Entry& get(const Sql& statement, Make&& make);

  private:
    std::unordered_map<const SqlShape*, std::unique_ptr<Entry>> single_;
    std::map<std::pair<std::vector<const SqlShape*>, std::vector<std::string>>, std::unique_ptr<Entry>>
        joined_;
  };

  std::unique_ptr<Statement> compile(const std::string& text) {
    return driver_.prepare(text, StatementLife::Cached);
  }
  /// For reading in order only: where every table has one, the database need not be asked.
  TableKey rowKeyOf(std::string_view table);
  static std::vector<std::string> typesOf(Statement& statement, std::size_t count);
  static std::unique_ptr<Statement>& roomFor(ManyStatements& statements, std::size_t rows);
  std::string quoted(std::string_view identifier) const;
  std::string orderClause(const struct SelectParts& parts, const TableKey& key) const;
  std::string rowsOf(const struct SelectParts& parts, const TableKey& key) const;

  Driver& driver_;
  const Spelling& spelling_;
  Map<PlainStatement> plain_;
  std::map<std::string, PlainStatement*, std::less<>> upserts_; ///< by table and columns
  Map<RowQuery> rows_;
  std::vector<RowQuery*> wholeRows_; ///< the statements that read all columns of the rows of a table
  Map<KeysetQuery> keysets_;
};

} // namespace qx::relational
