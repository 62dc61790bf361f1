// The compiled statements of one connection.
#pragma once

#include "adapters/sqlite/database_handle.h"
#include "adapters/sqlite/prepared_statement.h"
#include "platform/sql.h"

#include <bitset>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qx::sqlite {

/// Which columns of a row a write touches, by index in the row shape.
using ColumnMask = std::bitset<256>;

/// The source of rows: their shape and, for rows of a single table, how to write them back.
struct RowSource {
  std::optional<RowShape> shape;
  std::string table;    ///< empty when the rows cannot be changed
  int hidden = 0;       ///< leading columns that serve the cursor only
  int keyColumn = -1;   ///< index in the shape of a single text key, or -1
  std::string identity; ///< the key column that the database assigns, or empty
  std::unordered_map<ColumnMask, PreparedStatement> updates;
  std::unordered_map<ColumnMask, PreparedStatement> inserts;
};

struct RowQuery {
  PreparedStatement select;
  RowSource source;
};

struct KeysetQuery {
  PreparedStatement keys;
  PreparedStatement row;
  RowSource source;
};

/// Compiles each distinct statement once. Statements are found by the addresses of their fragments.
class StatementCache {
public:
  /// The database outlives the cache.
  explicit StatementCache(const DatabaseHandle& database) : database_(database) {}

  PreparedStatement& plain(const Sql& statement);
  RowQuery& rows(const Sql& statement);
  KeysetQuery& keyset(const Sql& statement);
  /// A statement for a stream, not shared.
  PreparedStatement stream(const Sql& statement);
  PreparedStatement& update(RowSource& source, const ColumnMask& columns);
  PreparedStatement& insert(RowSource& source, const ColumnMask& columns);
  /// Reads the shape at the first use of the statement, and again when the schema has changed.
  static void completeShape(RowSource& source, const PreparedStatement& statement);

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

  PreparedStatement compile(const std::string& text) { return {database_, text, StatementLife::Cached}; }
  struct TableKey {
    std::string text;     ///< the single text column that is the table's primary key, or empty
    std::string identity; ///< the integer column that is the rowid itself, or empty
  };
  TableKey keyOf(const std::string& table);

  const DatabaseHandle& database_;
  Map<PreparedStatement> plain_;
  Map<RowQuery> rows_;
  Map<KeysetQuery> keysets_;
};

} // namespace qx::sqlite
