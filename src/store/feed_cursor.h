// A place in the feed of results, as the programs keep it that ask for what came behind it.
#pragma once

#include "store/state_feed.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qx {

/// What keeps a cursor from being used.
enum class CursorRefusal : std::uint8_t {
  None,
  Unreadable,    ///< damaged, or something else
  OtherDatabase, ///< given out by the feed of another one
  NotHere,       ///< behind a change that is not in the feed: an earlier state of the database was restored
  Purged,        ///< changes behind it have been deleted
};

/// Reads the feed of a database that has one. Call it within a `ReadView`: the members belong together.
///
/// A cursor is a text that names the database and the change behind which it stands, with a few digits that
/// are computed from that change. Everything else about it may change.
class FeedReader {
public:
  /// Reads what the feed holds.
  explicit FeedReader(Connection& connection);

  /// The number of the change behind which the cursor stands.
  CursorRefusal find(std::string_view cursor, std::int64_t& number) const;
  /// The number before that of the first change of this moment (as in `timeStamp`) or later; that of the last
  /// change without one.
  std::int64_t before(std::string_view moment) const;
  /// Before all that is kept.
  std::int64_t beginning() const { return purged_; }
  /// The changes behind this number, in their order, for `toldChange`.
  std::unique_ptr<Recordset> changesBehind(std::int64_t number) const;

  std::string cursorBehind(const ToldChange& change) const;
  /// The cursor behind the change of this number, or where it was.
  std::string cursorAt(std::int64_t number) const;

private:
  std::string digitsOf(std::int64_t number) const;

  Connection& connection_;
  std::string identity_;    ///< empty before the first change is written
  std::int64_t last_ = 0;   ///< the number given out last
  std::int64_t purged_ = 0; ///< the changes up to this number are no longer there
};

} // namespace qx
