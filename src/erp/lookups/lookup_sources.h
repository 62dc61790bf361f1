// The record sources of the lookup windows and how they are read.
#pragma once

#include "platform/database.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx::erp {

/// `Number` columns hold integers, `Stamp` columns time stamps of which the day is shown.
enum class LookupColumnKind : std::uint8_t { Text, Number, Stamp };

struct LookupColumn {
  std::string_view name;
  std::string_view caption;
  std::size_t width; ///< characters that it usually needs
  LookupColumnKind kind = LookupColumnKind::Text;
};

/// What a lookup window lists: the rows of one table.
struct LookupSource {
  std::string_view name; ///< "AUSK_..."
  std::string_view table;
  std::span<const LookupColumn> columns;      ///< shown, from left to right; the result fields are among them
  std::span<const std::string_view> searched; ///< the names of those columns in which a search looks
  /// Columns that together tell every row from every other and are never null; rows are listed by them.
  std::span<const std::string_view> order;
  /// The rows in groups that are listed one after the other; a row belongs to one group at most.
  std::span<Sql (*const)()> groups;
  /// An index leads with every searched column. A search then reads one after the other, and hits in an
  /// earlier column are listed first; else it looks at each row of a group once.
  bool indexed = false;
};

/// All record sources. The descriptions live as long as the program.
std::span<const LookupSource> lookupSources();

/// By its name without regard to case; null when there is none. The description lives as long as the
/// program.
const LookupSource* findLookupSource(std::string_view recordSource);

/// The indexes of result fields among the columns. Raises `std::runtime_error` for a field that the source
/// does not have.
std::vector<std::size_t> resultColumns(const LookupSource& source, std::span<const std::string> fields);

/// Behind which row a page begins; the first page begins at a default one.
struct LookupPosition {
  std::size_t section = 0;
  std::vector<Value> after; ///< sort values of the last row seen; empty at the start of a section
};

/// The cells of a row as they are shown, one per column.
using LookupRow = std::vector<std::string>;

struct LookupPage {
  std::vector<LookupRow> rows;
  std::optional<LookupPosition> next; ///< null behind the last row
};

/// Reads a record source a page at a time, without ever counting or sorting all of it.
class LookupPages {
public:
  /// `criteria` is the condition that every row meets; empty for all rows. `connection` must outlive the
  /// object.
  LookupPages(Connection& connection, const LookupSource& source, Sql criteria);

  const LookupSource& source() const { return source_; }

  /// Up to `limit` rows that begin with the search text in a searched column, without regard to the case of
  /// its letters; all rows for a blank text. Rows come in no page twice. Raises `DatabaseError`.
  LookupPage page(std::string_view search, const LookupPosition& after, std::size_t limit) const;

  /// The statement behind a section of the rows; for those who look at its plan.
  Sql statement(std::string_view search, const LookupPosition& after, std::size_t limit) const;

private:
  Connection& connection_;
  const LookupSource& source_;
  Sql criteria_;
};

} // namespace qx::erp
