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

/// `Number` columns hold integers, `Stamp` columns time stamps, shown as days.
enum class LookupColumnKind : std::uint8_t { Text, Number, Stamp };

struct LookupColumn {
  std::string_view name;
  std::string_view caption;
  std::size_t width; ///< usual width in characters
  LookupColumnKind kind = LookupColumnKind::Text;
};

/// Stands for the connection's row key among the sort columns of a table without a key of its own.
inline constexpr std::string_view rowKeyColumn;

/// The rows that a lookup window lists, from one table.
struct LookupSource {
  std::string_view name; ///< "AUSK_..."
  std::string_view table;
  std::span<const LookupColumn> columns;      ///< shown, from left to right; they include the result fields
  std::span<const std::string_view> searched; ///< the names of the searched columns
  /// The sort columns, which are never null and together identify a row.
  std::span<const std::string_view> order;
  /// Groups of rows, listed one after the other; a row belongs to at most one group.
  std::span<Sql (*const)()> groups;
  /// Every searched column has an index. A search then reads column by column, hits in earlier columns first;
  /// otherwise it scans each group once.
  bool indexed = false;
};

/// All record sources. The descriptions live as long as the program.
std::span<const LookupSource> lookupSources();

/// Finds a source by its name, ignoring case; null when there is none. The description lives as long as the
/// program.
const LookupSource* findLookupSource(std::string_view recordSource);

/// The indexes of result fields among the columns. Raises `std::runtime_error` for a field that the source
/// does not have.
std::vector<std::size_t> resultColumns(const LookupSource& source, std::span<const std::string> fields);

/// The row after which a page begins; a default one for the first page.
struct LookupPosition {
  std::size_t section = 0;
  std::vector<Value> after; ///< sort values of the last row seen; empty at the start of a section
};

/// The displayed cells of a row, one per column.
using LookupRow = std::vector<std::string>;

struct LookupPage {
  std::vector<LookupRow> rows;
  std::optional<LookupPosition> next; ///< null after the last row
};

/// Reads a record source a page at a time, without ever counting or sorting all of it.
class LookupPages {
public:
  /// `criteria` is a condition on the rows; empty to list all. `connection` must outlive the object.
  LookupPages(Connection& connection, const LookupSource& source, Sql criteria);

  const LookupSource& source() const { return source_; }

  /// Up to `limit` rows with a searched column that begins with the text, ignoring case; all rows for a blank
  /// text. No row is on two pages. Raises `DatabaseError`.
  LookupPage page(std::string_view search, const LookupPosition& after, std::size_t limit) const;

  /// The statement of a section, public for inspecting its query plan.
  Sql statement(std::string_view search, const LookupPosition& after, std::size_t limit) const;

private:
  Connection& connection_;
  const LookupSource& source_;
  Sql criteria_;
};

} // namespace qx::erp
